// The arguments of one command: what they bind, its help, and a sentence for what nobody wanted.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvex::cli {

/// How an option stands in the help.
struct OptionHelp {
  std::string_view group;
  std::string_view help;
  std::string_view placeholder = {};  ///< of its value
};

class CommandLine {
 public:
  /// `name` as it is typed, such as "korvex list"; `footer` ends its help.
  CommandLine(const std::string& name, const std::string& description, const std::string& footer = {});
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  // What is bound must live until parse() is through.
  void positional(const std::string& name, std::optional<std::string>& value, std::string_view help);
  void positionals(const std::string& name, std::vector<std::string>& values, std::string_view help);
  void flag(const std::string& name, bool& value, const OptionHelp& help);
  void flag(const std::string& name, const std::function<void()>& given, const OptionHelp& help);
  void option(const std::string& name, std::string& value, const OptionHelp& help);
  void option(const std::string& name, const std::function<void(const std::string&)>& given,
              const OptionHelp& help);
  /// May be given again; each time it takes one value.
  void repeated(const std::string& name, std::vector<std::string>& values, const OptionHelp& help);

  /// False: help was asked for and printed. Throws UsageError.
  bool parse(const std::vector<std::string>& arguments);

 private:
  struct Parser;
  std::unique_ptr<Parser> parser_;
};

}  // namespace korvex::cli
