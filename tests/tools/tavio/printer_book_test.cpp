// Named printers: reading and changing their file.
#include "tools/tavio/printer_book.h"

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "support/rights.h"
#include "support/temporary_folder.h"
#include "tools/tavio/printer_books.h"

namespace tavio::tool {
namespace {

using test::readFile;
using test::writeFile;

class PrinterBookFiles : public testing::Test {
  protected:
    PrinterBookFile bookAt(const std::string& path) const { return {path, isAddress}; }
    NamedPrinter printer(const std::string& address = "tcp://a") const {
        NamedPrinter made;
        made.address = address;
        return made;
    }

    test::TemporaryFolder folder_;
    const std::string path_ = folder_ / "printers.toml";
    const PrinterBookFile book_{path_, isAddress};
};

TEST_F(PrinterBookFiles, AreEmptyWhereThereIsNone) {
    expectSame(book_.read(), PrinterBook{});
    expectSame(bookAt(folder_ / "no/folder/printers.toml").read(), PrinterBook{});
    EXPECT_EQ(folder_.names(), std::set<std::string>{});
}

TEST_F(PrinterBookFiles, KeepWhatIsAddedRemovedAndMadeTheDefault) {
    book_.add("hall", parse(kFull).printers.at("hall"));
    book_.add("bar", printer("tcp://bar"));
    book_.setDefault("bar");
    PrinterBook book;
    book.defaultName = "bar";
    book.printers["hall"] = parse(kFull).printers.at("hall");
    book.printers["bar"] = printer("tcp://bar");
    expectSame(book_.read(), book);

    book_.remove("bar");
    EXPECT_EQ(book_.read().defaultName, "");
    EXPECT_EQ(book_.read().printers.size(), 1U);
    book_.remove("hall");
    expectSame(book_.read(), PrinterBook{});
}

TEST_F(PrinterBookFiles, AreMadeWithTheirFolder) {
    const std::string path = folder_ / "a/b/printers.toml";
    bookAt(path).add("hall", printer());
    EXPECT_TRUE(bookAt(path).read().printers.contains("hall"));
    EXPECT_EQ(std::filesystem::status(path).permissions() & std::filesystem::perms::others_write,
              std::filesystem::perms::none);
}

TEST_F(PrinterBookFiles, KeepTheirPermissions) {
    writeFile(path_, kFull);
    ASSERT_EQ(::chmod(path_.c_str(), 0600), 0);
    book_.add("exit", printer());
    struct stat status {};
    ASSERT_EQ(::stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(PrinterBookFiles, StayAsTheyAreIfTheChangeCannotBe) {
    writeFile(path_, kFull);
    NamedPrinter bad = printer();
    bad.resolution = 301;
    NamedPrinter notUtf8 = printer();
    notUtf8.path = "\x80";
    NamedPrinter ofLongText = printer();
    ofLongText.path = std::string(4096, 'x');
    const std::string nobody = "there is no printer of the name \"exit\" in " + path_;
    EXPECT_EQ(failureOf([&] { book_.add("hall", printer()); }),
              "there is a printer of the name \"hall\" already");
    EXPECT_EQ(failureOf([&] { book_.add("exit", bad); }), "resolution must be 200, 300 or 600");
    EXPECT_EQ(failureOf([&] { book_.add("exit", notUtf8); }), "\"\x80\" is not UTF-8");
    EXPECT_EQ(failureOf([&] { book_.add("exit", ofLongText); }),
              "the line is longer than 4096 bytes");
    EXPECT_EQ(failureOf([&] { book_.add("a b", printer()); }),
              "a printer's name must be 1 to 64 letters, digits, \"-\", \"_\" and \".\"");
    EXPECT_EQ(failureOf([&] { book_.remove("exit"); }), nobody);
    EXPECT_EQ(failureOf([&] { book_.setDefault("exit"); }), nobody);
    EXPECT_EQ(readFile(path_), kFull);
}

TEST_F(PrinterBookFiles, ThatAreWrongAreNotChanged) {
    writeFile(path_, "default = 1\n");
    const std::string message = path_ + ":1:11: default must be the name of a printer";
    EXPECT_EQ(failureOf([&] { book_.read(); }), message);
    EXPECT_EQ(failureOf([&] { book_.add("hall", printer()); }), message);
    EXPECT_EQ(failureOf([&] { book_.remove("hall"); }), message);
    EXPECT_EQ(failureOf([&] { book_.setDefault("hall"); }), message);
    EXPECT_EQ(readFile(path_), "default = 1\n");
}

TEST_F(PrinterBookFiles, MayBeBehindSymbolicLinks) {
    std::filesystem::create_directory(folder_ / "elsewhere");
    std::filesystem::create_symlink("elsewhere/mine.toml", path_);
    EXPECT_TRUE(book_.read().printers.empty());
    book_.add("hall", printer());
    book_.add("bar", printer());
    EXPECT_TRUE(std::filesystem::is_symlink(path_));
    EXPECT_EQ(bookAt(folder_ / "elsewhere/mine.toml").read().printers.size(), 2U);
}

TEST_F(PrinterBookFiles, AreAtMostOneMebibyte) {
    std::string lines;
    while (lines.size() < (1U << 20U)) lines += "# " + std::string(1021, 'x') + "\n";
    writeFile(path_, lines);
    ASSERT_EQ(lines.size(), 1U << 20U);
    EXPECT_TRUE(book_.read().printers.empty());
    writeFile(path_, lines + "#");
    EXPECT_EQ(failureOf([&] { book_.read(); }), path_ + " is larger than 1 MiB");
}

TEST_F(PrinterBookFiles, AreFilesThatMayBeReadAndWritten) {
    EXPECT_EQ(failureOf([&] { bookAt(folder_.path()).read(); }),
              folder_.path() + " is a folder, not a file");
    writeFile(folder_ / "file", "");
    const std::string inFile = folder_ / "file/printers.toml";
    EXPECT_EQ(failureOf([&] { bookAt(inFile).add("hall", printer()); }),
              inFile + " cannot be written: Not a directory");
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0555), 0);
    {
        const test::WithoutRootRights rights;
        ASSERT_TRUE(rights.succeeded());
        EXPECT_EQ(failureOf([&] { book_.add("hall", printer()); }),
                  path_ + " cannot be written: Permission denied");
    }
    EXPECT_EQ(folder_.names(), std::set<std::string>{"file"});
}

TEST_F(PrinterBookFiles, LoseNothingWhenSeveralProgramsAddAtOnce) {
    constexpr int kPrograms = 4;
    constexpr int kPrinters = 25;
    std::vector<pid_t> children;
    for (int program = 0; program < kPrograms; ++program) {
        const pid_t child = ::fork();
        if (child == 0) {
            const std::string failure = failureOf([&] {
                for (int number = 0; number < kPrinters; ++number) {
                    book_.add(std::to_string(program) + "." + std::to_string(number), printer());
                }
            });
            ::_exit(failure.empty() ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(book_.read().printers.size(), std::size_t{kPrograms} * kPrinters);
    EXPECT_EQ(folder_.names(), (std::set<std::string>{"printers.toml", "printers.toml.lock"}));
}

// ---- The user's own book ------------------------------------------------------------------------

class Environment {
  public:
    Environment(const char* name, const char* value) : name_(name) {
        if (const char* before = std::getenv(name)) before_ = before;
        set(value);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { set(before_ ? before_->c_str() : nullptr); }

  private:
    void set(const char* value) const {
        if (value == nullptr) {
            ::unsetenv(name_);
        } else {
            ::setenv(name_, value, 1);
        }
    }

    const char* name_;
    std::optional<std::string> before_;
};

TEST(PrinterBookPath, IsInTheFolderOfSettings) {
    const Environment home("HOME", "/home/maria");
    const Environment settings("XDG_CONFIG_HOME", "/settings");
    EXPECT_EQ(printerBookPath(), "/settings/tavio/printers.toml");
    for (const char* none : {static_cast<const char*>(nullptr), "", "relative"}) {
        const Environment noSettings("XDG_CONFIG_HOME", none);
        EXPECT_EQ(printerBookPath(), "/home/maria/.config/tavio/printers.toml");
        const Environment noHome("HOME", "");
        EXPECT_EQ(failureOf([] { printerBookPath(); }),
                  "there is no place for named printers: HOME is not set");
    }
}

}  // namespace
}  // namespace tavio::tool
