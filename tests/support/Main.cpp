// The entry of every test program.
#include <cstdio>

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

// A heap that a test has damaged is found here at the latest.
bool HeapIsWhole() {
#ifdef _WIN32
    return HeapValidate(GetProcessHeap(), 0, nullptr) != 0;
#else
    return true; // the sanitizers watch
#endif
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    if (testing::UnitTest::GetInstance()->test_to_run_count() == 0) {
        static_cast<void>(std::fputs("no test matches the filter\n", stderr));
        return 1;
    }
    if (!HeapIsWhole()) {
        static_cast<void>(std::fputs("the heap is damaged\n", stderr));
        return 1;
    }
    return result;
}
