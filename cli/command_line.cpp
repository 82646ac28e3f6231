#include "command_line.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <cstdio>

#include "failure.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

constexpr std::size_t kNameColumns = 34;
constexpr std::size_t kHelpColumns = 66;

/// Breaks lines between words; the formatter indents them.
std::string wrapped(std::string_view text) {
  std::string lines;
  std::size_t length = 0;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    if (length > 0) lines += length + 1 + word.size() > kHelpColumns ? '\n' : ' ';
    length = lines.empty() || lines.back() == '\n' ? word.size() : length + 1 + word.size();
    lines += word;
  }
  return lines;
}

std::string help_of(const CLI::App& app) {
  std::string help = app.help();
  for (std::size_t at = 0; (at = help.find("\n\n\n", at)) != std::string::npos;) help.erase(at, 1);
  return help;
}

/// One sentence for the first of the arguments that nobody wanted.
std::string unexpected(const CLI::App& app, const std::vector<std::string>& arguments,
                       const std::vector<std::string>& unwanted) {
  const auto is_unwanted = [&](const std::string& argument) {
    return std::ranges::find(unwanted, argument) != unwanted.end();
  };
  const auto is_option = [](const std::string& argument) { return argument.starts_with('-'); };
  const auto option = std::ranges::find_if(
      arguments, [&](const std::string& argument) { return is_unwanted(argument) && is_option(argument); });
  const std::string help = app.get_name() + " --help shows what there is.";
  if (option == arguments.end()) {
    return "There is an argument too many, \"" + printable(unwanted.front()) + "\"; " + help;
  }
  const std::string name = option->substr(0, option->find('='));
  std::vector<std::string> names;
  for (const CLI::Option* const known : app.get_options()) names.push_back(known->get_name());
  const std::string_view meant = nearest(name, {names.begin(), names.end()});
  const std::string sentence = app.get_name() + " has no option " + printable(name) + "; ";
  return sentence + (meant.empty() ? help : "did you mean " + std::string(meant) + "?");
}

void put_into_help(CLI::Option& option, const OptionHelp& help) {
  option.type_name(std::string(help.placeholder))->group(std::string(help.group));
}

}  // namespace

struct CommandLine::Parser {
  CLI::App app;
};

CommandLine::CommandLine(const std::string& name, const std::string& description, const std::string& footer)
    : parser_(new Parser{CLI::App(description, name)}) {
  parser_->app.footer(footer);
}

CommandLine::~CommandLine() = default;

void CommandLine::positional(const std::string& name, std::optional<std::string>& value,
                             std::string_view help) {
  parser_->app.add_option(name, value, std::string(help))->type_name("");
}

void CommandLine::positionals(const std::string& name, std::vector<std::string>& values,
                              std::string_view help) {
  parser_->app.add_option(name, values, std::string(help));
}

void CommandLine::flag(const std::string& name, bool& value, const OptionHelp& help) {
  parser_->app.add_flag(name, value, std::string(help.help))->group(std::string(help.group));
}

void CommandLine::flag(const std::string& name, const std::function<void()>& given, const OptionHelp& help) {
  parser_->app.add_flag_callback(name, given, std::string(help.help))->group(std::string(help.group));
}

void CommandLine::option(const std::string& name, std::string& value, const OptionHelp& help) {
  put_into_help(*parser_->app.add_option(name, value, std::string(help.help)), help);
}

void CommandLine::option(const std::string& name, const std::function<void(const std::string&)>& given,
                         const OptionHelp& help) {
  put_into_help(*parser_->app.add_option_function<std::string>(name, given, std::string(help.help)), help);
}

void CommandLine::repeated(const std::string& name, std::vector<std::string>& values,
                           const OptionHelp& help) {
  put_into_help(*parser_->app.add_option(name, values, std::string(help.help))->allow_extra_args(false),
                help);
}

bool CommandLine::parse(const std::vector<std::string>& arguments) {
  CLI::App& app = parser_->app;
  app.get_formatter()->column_width(kNameColumns);
  app.set_help_flag("-h,--help", "print this help");
  for (CLI::Option* const option : app.get_options()) option->description(wrapped(option->get_description()));
  app.allow_extras();
  std::vector<std::string> reversed(arguments.rbegin(),
                                    arguments.rend());  // the parser takes them from the end
  try {
    app.parse(std::move(reversed));
  } catch (const CLI::CallForHelp&) {
    std::fputs(help_of(app).c_str(), stdout);
    return false;
  } catch (const CLI::ParseError& error) {
    throw UsageError(std::string(error.what()) + "; " + app.get_name() + " --help shows what is allowed.");
  }
  std::vector<std::string> unwanted = app.remaining();
  std::erase(unwanted, "--");  // told that what follows is data
  if (!unwanted.empty()) throw UsageError(unexpected(app, arguments, unwanted));
  return true;
}

}  // namespace korvex::cli
