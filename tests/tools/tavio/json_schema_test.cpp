// Every JSON object that a test of this program has made the tool write is valid by the schema in docs/.

#include <algorithm>
#include <cstdlib>
#include <string>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"
#include "tools/tavio/process.h"

namespace tavio::test {
namespace {

constexpr int kNoValidator = 3;

// The exit status of the validator, run by this Python, for the file "objects" in the folder; its
// output goes to the file "said".
int validateBy(const std::string& python, const TemporaryFolder& folder) {
    std::string command = python + " '" TAVIO_JSON_VALIDATOR "' '" TAVIO_JSON_SCHEMA "' '";
    command.append(folder / "objects").append("' >'").append(folder / "said").append("' 2>&1");
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The exit status of the validator for these lines of JSON; what it says goes to `said`. The first
// Python on the path may be one without Debian's packages.
int validate(const std::string& lines, std::string& said) {
    const TemporaryFolder folder;
    writeFile(folder / "objects", lines);
    int status = validateBy("python3", folder);
    if (status == kNoValidator) status = validateBy("/usr/bin/python3", folder);
    said = readFile(folder / "said");
    return status;
}

// Runs after the last test.
class JsonValidation : public testing::Environment {
  public:
    void TearDown() override {
        std::string lines;
        for (const std::string& object : writtenJson()) {
            EXPECT_EQ(std::count(object.begin(), object.end(), '\n'), 1) << object;
            lines += object;
        }
        if (lines.empty()) return;
        std::string said;
        const int status = validate(lines, said);
        EXPECT_TRUE(status == 0 || status == kNoValidator) << said;
    }
};

const auto* const kValidation = testing::AddGlobalTestEnvironment(new JsonValidation);

TEST(JsonSchema, RefusesWhatItDoesNotDescribe) {
    ASSERT_NE(kValidation, nullptr);
    const std::string good =
        R"({"command":"cut","status":0,"outcome":"written","problems":[],"warnings":[],"remarks":[]})";
    std::string said;
    const int status = validate(good + "\n", said);
    if (status == kNoValidator) GTEST_SKIP() << "no python3-jsonschema here";
    EXPECT_EQ(status, 0) << said;
    for (const auto& [from, to] :
         {std::pair<std::string, std::string>{"\"status\":0", "\"status\":7"},
          {"\"written\"", "\"partly-sent\""},
          {"\"warnings\":[]", "\"warnings\":[{}]"},
          {"\"remarks\":[]", "\"other\":[]"}}) {
        std::string bad = good;
        bad.replace(bad.find(from), from.size(), to);
        EXPECT_EQ(validate(bad + "\n", said), 1) << bad;
    }
}

}  // namespace
}  // namespace tavio::test
