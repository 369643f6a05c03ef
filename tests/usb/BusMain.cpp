// The emulated bus stands between this program and the system: the program starts itself anew with
// umockdev's library loaded first, unless it runs so already.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

int main(int count, char** words) {
    const char* const preloaded = std::getenv("LD_PRELOAD");
    if (preloaded == nullptr ||
        std::string_view(preloaded).find("umockdev") == std::string_view::npos) {
        std::vector<char*> command(words, words + count + 1);  // the null at their end as well
        char wrapper[] = "umockdev-wrapper";
        command.insert(command.begin(), wrapper);
        // The address sanitizer wants to be first itself.
        setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 0);
        execvp(wrapper, command.data());
        std::perror(wrapper);
        return 1;
    }
    testing::InitGoogleTest(&count, words);
    return RUN_ALL_TESTS();
}
