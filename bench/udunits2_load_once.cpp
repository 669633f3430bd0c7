// Loads UDUNITS-2's own unit database, converts one value and exits: the
// peer of load_once.cpp for timing a fresh process from outside.
#include <udunits2.h>

int main() {
    ut_set_error_message_handler(ut_ignore);
    ut_system* system = ut_read_xml(QUANTOR_UDUNITS2_XML);
    if (!system) return 1;
    ut_unit* from = ut_parse(system, "km", UT_ASCII);
    ut_unit* to = ut_parse(system, "m", UT_ASCII);
    cv_converter* converter = from && to ? ut_get_converter(from, to) : nullptr;
    const bool ok = converter && cv_convert_double(converter, 2.5) == 2500.0;
    cv_free(converter);
    ut_free(from);
    ut_free(to);
    ut_free_system(system);
    return ok ? 0 : 1;
}
