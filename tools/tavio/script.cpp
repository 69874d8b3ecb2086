#include "tools/tavio/script.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "tools/tavio/command_line.h"
#include "tools/tavio/command_list.h"

namespace tavio::tool {

namespace {

using Words = std::vector<std::string>;

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// Splits one line.
class WordReader {
  public:
    explicit WordReader(std::string_view line) : rest_(line) {}

    tl::expected<Words, std::string> read() {
        while (!rest_.empty() && wrong_.empty()) {
            const char c = take();
            if (isBlank(c)) {
                endWord();
            } else if (c == '#' && !word_) {
                break;
            } else {
                takePart(c);
            }
        }
        endWord();
        if (!wrong_.empty()) return tl::unexpected(wrong_);
        return std::move(words_);
    }

  private:
    char take() {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }

    void endWord() {
        if (word_) words_.push_back(std::move(*word_));
        word_.reset();
    }

    void takePart(char c) {
        if (!word_) word_ = "";
        if (c == '\'') {
            takeSingleQuoted();
        } else if (c == '"') {
            takeDoubleQuoted();
        } else if (c == '\\') {
            takeQuotedCharacter();
        } else {
            *word_ += c;
        }
    }

    void takeSingleQuoted() {
        const std::size_t end = rest_.find('\'');
        if (end == std::string_view::npos) {
            wrong_ = "a single quote is not closed";
            return;
        }
        word_->append(rest_.substr(0, end));
        rest_.remove_prefix(end + 1);
    }

    void takeDoubleQuoted() {
        while (!rest_.empty()) {
            char c = take();
            if (c == '"') return;
            const bool isQuote =
                c == '\\' && !rest_.empty() &&
                std::string_view("\"\\$`").find(rest_.front()) != std::string_view::npos;
            if (isQuote) c = take();
            *word_ += c;
        }
        wrong_ = "a double quote is not closed";
    }

    void takeQuotedCharacter() {
        if (rest_.empty()) {
            wrong_ = "a backslash ends the line: a command has one line";
        } else {
            *word_ += take();
        }
    }

    std::string_view rest_;
    Words words_;
    std::optional<std::string> word_;  // the one that has begun
    std::string wrong_;
};

// The lines without their ends, "\n" or "\r\n", and without a byte order mark.
std::vector<std::string_view> linesOf(std::string_view text) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        lines.push_back(line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

class ScriptReader {
  public:
    explicit ScriptReader(const Settings& settings)
        : settings_(settings),
          commandList_(scriptCommands(options_)),
          commands_(commandList_, options_),
          settingsLine_(scriptSettings(options_), options_) {}

    Script read(std::string_view text) {
        std::size_t number = 0;
        for (std::string_view line : linesOf(text)) {
            ++number;
            if (std::string wrong = readLine(number, line); !wrong.empty()) {
                script_.wrong.push_back({number, std::move(wrong)});
            }
        }
        return std::move(script_);
    }

  private:
    // "" or what is wrong with the line.
    std::string readLine(std::size_t number, std::string_view line) {
        if (line.find('\0') != std::string_view::npos) return "the line has a NUL byte";
        auto words = wordsOf(line);
        if (!words) return words.error();
        if (words->empty()) return "";
        const bool isSettings = words->front().starts_with('-');
        if (!isSettings && !isCommand(words->front())) return noCommand(words->front());
        options_ = {};
        options_.settings = settings_;
        const Reading reading = (isSettings ? settingsLine_ : commands_).read(std::move(*words));
        if (reading.end == Reading::End::kShown) return "a script shows no help";
        if (reading.end == Reading::End::kWrong) return reading.text;
        if (std::string wrong = contradictionIn(options_); !wrong.empty()) return wrong;
        if (isSettings) {
            settings_ = options_.settings;
        } else {
            script_.lines.push_back({number, options_});
        }
        return "";
    }

    bool isCommand(const std::string& word) const {
        return std::any_of(commandList_.commands.begin(), commandList_.commands.end(),
                           [&word](const CommandSpec& command) { return command.name == word; });
    }

    std::string noCommand(const std::string& word) const {
        std::string names;
        for (const CommandSpec& command : commandList_.commands) names += " " + command.name;
        return (word.empty() ? "\"\"" : word) + " is no command of a script: give one of" + names;
    }

    Settings settings_;  // that hold for the next line
    Options options_;    // of the present line
    CommandSpec commandList_;
    CommandLine commands_;
    CommandLine settingsLine_;
    Script script_;
};

}  // namespace

tl::expected<Words, std::string> wordsOf(std::string_view line) {
    return WordReader(line).read();
}

Script readScript(std::string_view text, const Settings& settings) {
    return ScriptReader(settings).read(text);
}

}  // namespace tavio::tool
