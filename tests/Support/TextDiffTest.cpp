#include "Support/TextDiff.h"

#include "Executable/Shell.h"
#include "Fakes/PrivateHome.h"

#include <gtest/gtest.h>
#include <random>

namespace kippo {

TEST(TextDiff, ReadsLikeDiffWithTheContextOfThreeLines) {
    const std::string before = "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n13\n14\n15\n16\n";
    const std::string after = "1\n2\n3\n4\nfive\n6\n7\n8\n9\n10\n11\n11½\n12\n13\n14\n15\n16";
    EXPECT_EQ(unifiedDiff(before, after, "a", "b"), "--- a\n+++ b\n"
                                                    "@@ -2,15 +2,16 @@\n"
                                                    " 2\n 3\n 4\n-5\n+five\n 6\n 7\n 8\n 9\n 10\n 11\n+11½\n 12\n 13\n"
                                                    " 14\n 15\n-16\n+16\n\\ No newline at end of file\n");
    EXPECT_EQ(unifiedDiff("", "x\n", "/dev/null", "b"), "--- /dev/null\n+++ b\n@@ -0,0 +1 @@\n+x\n");
    EXPECT_EQ(unifiedDiff("same", "same", "a", "b"), "");
}

/// Whatever the texts, `patch` makes the one from the other by it.
TEST(TextDiff, IsWhatPatchTakes) {
    std::mt19937 random{7};
    const auto text = [&random](unsigned lines) {
        std::string all;
        for (unsigned i = 0; i < lines; ++i) {
            all += std::string(1, static_cast<char>('a' + random() % 4)) + "\n";
        }
        return random() % 3 == 0 && !all.empty() ? all.substr(0, all.size() - 1) : all;
    };
    for (int round = 0; round < 40; ++round) {
        const PrivateHome folder;
        const std::string before = text(1 + static_cast<unsigned>(random() % 30));
        const std::string after = text(1 + static_cast<unsigned>(random() % 30));
        folder.write("file", before);
        folder.write("change", unifiedDiff(before, after, "file", "file"));
        if (before != after) {
            ASSERT_EQ(std::system(("patch -s -d " + folder.path() + " < " + folder.path("change")).c_str()), 0);
        }
        ASSERT_EQ(folder.read("file"), after);
    }
    const std::string large = text(4000);
    const auto lines = diffLines(large, text(4000), 0);
    EXPECT_FALSE(lines.empty()) << "texts with too many differences still come out";
}

} // namespace kippo
