// The one file that includes the command line library, which is slow to compile.
#include "tools/tavio/command_line.h"

#include <algorithm>
#include <optional>
#include <set>
#include <sstream>
#include <utility>

#include <CLI/CLI.hpp>

namespace tavio::tool {

const char* const kVersion = "tavio " TAVIO_VERSION;

namespace {

std::string fullName(const CLI::App& command) {
    const CLI::App* parent = command.get_parent();
    return parent == nullptr ? command.get_name() : fullName(*parent) + " " + command.get_name();
}

// The sentence about the first unknown word of this command or its subcommand, if that word
// explains a missing argument; none if there is no such word.
std::optional<std::string> aboutWrongWord(const CLI::App& command) {
    const auto named = command.get_subcommands();  // those on this command line
    const std::vector<std::string> words = command.remaining();
    auto word = std::find_if(words.begin(), words.end(),
                             [](const std::string& candidate) { return candidate != "--"; });
    if (word == words.end()) return named.empty() ? std::nullopt : aboutWrongWord(*named.front());
    const bool option = words.front() != "--" && word->size() > 1 && word->front() == '-';
    const bool hasCommands = command.get_require_subcommand_min() > 0;
    if (!option && (!hasCommands || !named.empty())) return std::nullopt;
    const std::string name = fullName(command);
    return (word->empty() ? "\"\"" : *word) + " is no " + (option ? "option" : "command") + " of " +
           name + " (" + name + " --help lists them)";
}

std::string sentenceOf(const CLI::App& app, const CLI::Error& error) {
    const auto code = static_cast<CLI::ExitCodes>(error.get_exit_code());
    std::optional<std::string> sentence;
    if (code == CLI::ExitCodes::RequiredError || code == CLI::ExitCodes::ExtrasError) {
        sentence = aboutWrongWord(app);
    }
    return sentence.value_or(std::string(error.what()) + " (tavio --help tells more)");
}

// Hands each value to the option, and its complaint to the library.
void take(const OptionSpec& spec, const std::string& name, const CLI::results_t& values) {
    for (const std::string& value : values) {
        if (std::string wrong = spec.set(value); !wrong.empty()) {
            throw CLI::ValidationError(name, wrong);
        }
    }
}

bool isNumber(const std::string& word) {
    return !word.empty() && word.find_first_not_of("0123456789") == std::string::npos;
}

// "--name" "5" becomes "--name=5": the library takes a flag's value only so.
void joinNumbers(std::vector<std::string>& words, const std::string& name) {
    for (std::size_t index = 0; index + 1 < words.size() && words[index] != "--"; ++index) {
        if (words[index] != name || !isNumber(words[index + 1])) continue;
        words[index] += "=" + words[index + 1];
        words.erase(words.begin() + static_cast<std::ptrdiff_t>(index) + 1);
    }
}

}  // namespace

class CommandLine::Impl {
  public:
    Impl(const CommandSpec& commands, Options& options)
        : options_(options), app_(commands.what, commands.name) {
        app_.set_version_flag("--version", kVersion);
        fill(app_, commands);
    }

    Reading read(std::vector<std::string> words) {
        for (const std::string& name : flagsOrNumbers_) joinNumbers(words, name);
        std::reverse(words.begin(), words.end());  // as the library takes them
        try {
            app_.parse(std::move(words));
        } catch (const CLI::ParseError& end) {
            std::ostringstream shown;
            if (end.get_exit_code() != 0) return {Reading::End::kWrong, sentenceOf(app_, end)};
            app_.exit(end, shown, shown);
            return {Reading::End::kShown, shown.str()};
        }
        return {};
    }

  private:
    void fill(CLI::App& app, const CommandSpec& spec) {
        app.footer("Example:\n  " + spec.example);
        if (spec.command) {
            app.callback([this, command = *spec.command] { options_.command = command; });
        }
        for (const OptionSpec& option : spec.options) {
            add(app, option);
            if (option.kind == OptionSpec::Kind::kFlagOrNumber) flagsOrNumbers_.insert(option.name);
        }
        if (!spec.commands.empty()) app.require_subcommand(1);
        for (const CommandSpec& command : spec.commands) {
            fill(*app.add_subcommand(command.name, command.what), command);
        }
    }

    static void add(CLI::App& app, const OptionSpec& spec) {
        CLI::Option* added = addOfItsKind(app, spec);
        if (!spec.group.empty()) added->group(spec.group);
        for (const std::string& other : spec.excludes) added->excludes(app.get_option(other));
    }

    static CLI::Option* addOfItsKind(CLI::App& app, const OptionSpec& spec) {
        if (spec.kind == OptionSpec::Kind::kFlag) return addFlag(app, spec);
        if (spec.kind == OptionSpec::Kind::kFlagOrNumber) return addFlagOrNumber(app, spec);
        return addValue(app, spec);
    }

    static CLI::Option* addFlagOrNumber(CLI::App& app, const OptionSpec& spec) {
        return app
            .add_flag_function(
                spec.name + "{" + spec.value + "}",
                [spec](std::int64_t number) { take(spec, spec.name, {std::to_string(number)}); },
                spec.help)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    }

    static CLI::Option* addFlag(CLI::App& app, const OptionSpec& spec) {
        return app.add_flag_function(
            spec.name,
            [spec](std::int64_t count) { take(spec, spec.name, {count > 0 ? "true" : "false"}); },
            spec.help);
    }

    static CLI::Option* addValue(CLI::App& app, const OptionSpec& spec) {
        const std::string name = spec.name.substr(spec.name.find(',') + 1);
        CLI::Option* added = app.add_option(
            spec.name,
            [spec, name](const CLI::results_t& values) {
                take(spec, name, values);
                return true;
            },
            spec.help);
        added->type_name(spec.value);
        if (spec.kind == OptionSpec::Kind::kValues) added->take_all();
        const bool isArgument = spec.name.front() != '-';
        const bool isOptional = spec.kind == OptionSpec::Kind::kOptionalArgument;
        added->required(spec.isRequired || (isArgument && !isOptional));
        if (spec.kind == OptionSpec::Kind::kArguments) {
            added->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args();
        }
        return added;
    }

    Options& options_;
    CLI::App app_;
    std::set<std::string> flagsOrNumbers_;  // names of options
};

CommandLine::CommandLine(const CommandSpec& commands, Options& options)
    : impl_(std::make_unique<Impl>(commands, options)) {}

CommandLine::~CommandLine() = default;

Reading CommandLine::read(std::vector<std::string> words) {
    return impl_->read(std::move(words));
}

}  // namespace tavio::tool
