// Loads the default catalogue, as a host's first conversion does, converts
// one value and exits: timed from outside, it is the cost of a fresh process
// that needs the catalogue.
#include <quantor/quantor.h>

int main() {
    double result = 0.0;
    return UnitConvert(result, L"m", 2.5, L"km") && result == 2500.0 ? 0 : 1;
}
