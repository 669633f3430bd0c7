// Reading, simplifying, printing, copying and freeing on a 128 KiB thread
// stack, the smallest default thread stack of common C libraries: the deepest
// and largest expressions the reader accepts, formulas that never settle,
// trees far deeper than any the parser makes, and the shipped catalogue.
#include <pthread.h>

#include <filesystem>
#include <functional>

#include "dscr/parse_test_support.h"

namespace {

// Sanitizers make every stack frame several times larger.
#if defined(__SANITIZE_ADDRESS__)
constexpr size_t kFrameGrowth = 8;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr size_t kFrameGrowth = 8;
#else
constexpr size_t kFrameGrowth = 1;
#endif
#else
constexpr size_t kFrameGrowth = 1;
#endif

constexpr size_t kSmallStack = 128 * 1024 * kFrameGrowth;

// Runs `work` on a new thread with a small stack and waits for it.
void OnSmallStack(const std::function<void()>& work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kSmallStack), 0);
    pthread_t thread;
    const auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

// A balanced sum of 2^levels operands.
std::string BalancedSum(int levels) {
    return levels == 0 ? "m" : "(" + BalancedSum(levels - 1) + " + " + BalancedSum(levels - 1) + ")";
}

using SmallStack = ParseTest;

// Each formula is read with the trace active, so that error reports place
// and print their trees as well.
TEST_F(SmallStack, DeepestAndLargestFormulasAreRead) {
    const std::string deepest = Repeated("m * (", 199) + "m" + Repeated(")", 199);
    const std::string formulas[] = {
        deepest,
        Repeated("-(", 199) + "m" + Repeated(")", 199),
        "m" + Repeated(" + 1", 200),
        "m * " + Repeated("(", 5000) + "2" + Repeated(")", 5000),
        BalancedSum(12),
        "m / (" + BalancedSum(11) + ")",
        "m" + Repeated(" * *", 12),
        "m format " + Repeated("-", 12) + "3, 0",
        "(" + deepest + ") - (" + deepest + ") + m",
    };
    for (const std::string& formula : formulas) {
        SCOPED_TRACE(formula.substr(0, 60));
        OnSmallStack([&] {
            QtrAdminDscr admin;
            Parse(admin, "category A { unit m, k;\n convert k <- " + formula + ";\n}\n");
        });
    }
}

TEST_F(SmallStack, TreesDeeperThanTheParserMakesAreCopiedPrintedAndFreed) {
    OnSmallStack([] {
        X_ParsNodePtr tree = X_ParsNode::NewLeaf(ND_NAME, X_Token{1, 1, TOKID_ID, L"m"});
        for (int i = 0; i < 20000; ++i)
            tree = X_ParsNode::NewOperator(i % 2 ? ND_UNMINUS : ND_PLUS, std::move(tree),
                                           i % 2 ? nullptr : X_ParsNode::NewLeaf(ND_INT, X_Token{1, 2, TOKID_INT, L"1"}));
        X_ParsNode copy(*tree);
        EXPECT_EQ(copy.Depth(), 20000);
        EXPECT_EQ(copy.NodeCount(), 30001);
        EXPECT_NE(copy.FindName(L"m"), nullptr);
        X_ParseState state;
        const X_ParseStateScope scope(state);
        EXPECT_EQ(tree->Tree_Opt(), -1);
        EXPECT_EQ(state.errorCount, 1);
        copy.Print(0, L"deep");
    });
}

TEST_F(SmallStack, ShippedCatalogueIsRead) {
    const std::filesystem::path folder = std::filesystem::path(QUANTOR_TEST_DATA_DIR) / "unitsandcurrencies";
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".txt") continue;
        SCOPED_TRACE(entry.path().string());
        OnSmallStack([&] {
            QtrAdminDscr admin;
            EXPECT_TRUE(Parse_UnitdescrFile(&admin, quantor::detail::FromUtf8(entry.path().string())));
        });
    }
}

}  // namespace
