// `korvex completion`: what shells offer behind korvex, from the same tables as the commands themselves.
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "command_line.hpp"
#include "commands.hpp"
#include "draw_settings.hpp"
#include "failure.hpp"
#include "formats/formats.hpp"
#include "symbologies.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

constexpr std::string_view kDrawOptions = "--data-file --output --format --verbose --help";
constexpr std::string_view kBatchOptions =
    "--output --name --format --report --resume --threads --symbology --set --ignore --sheet --page --grid "
    "--margins --gap --caption --help";
constexpr std::string_view kFileOptions = "-o|--output|--data-file|--report|--sheet";

/// The two shells' functions differ in how they take their words; what they offer is the same.
constexpr std::string_view kBash = R"(_korvex() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
  local -a offered
  mapfile -t offered < <(_korvex_offer "$before" "${COMP_WORDS[@]:1:COMP_CWORD-1}")
  if [ "${offered[0]}" = FILES ]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
    compopt -o filenames
  else
    mapfile -t COMPREPLY < <(compgen -W "${offered[*]}" -- "$word")
  fi
}
complete -F _korvex korvex
)";
constexpr std::string_view kZsh = R"zsh(_korvex() {
  local -a offered
  offered=(${(f)"$(_korvex_offer "${words[CURRENT-1]}" "${(@)words[2,CURRENT-1]}")"})
  if [[ ${offered[1]} == FILES ]]; then
    _files
  else
    compadd -- $offered
  fi
}
if [[ ${funcstack[1]} == _korvex ]]; then _korvex "$@"; else compdef _korvex korvex; fi
)zsh";

std::string offer(std::string_view words) {
  return "printf '%s\\n' " + std::string(words) + " ;;\n";
}

/// A case of what to offer behind an option with choices, one a symbology, and of the symbology's options.
void add(const Symbology& symbology, std::string& values, std::string& options) {
  const std::string name(symbology.name);
  options += "        " + name + ") own=\"";
  for (const Option& option : symbology.options) {
    options.append(option.name).append(" ");
    if (option.choices.empty()) continue;
    std::string choices;
    for (const std::string_view choice : option.choices) choices.append(choice).append(" ");
    values += "    " + name + ":" + std::string(option.name) + ") " + offer(choices);
  }
  options += "\" ;;\n";
}

std::string names() {
  std::string names;
  for (const Symbology& symbology : symbologies()) names.append(symbology.name).append(" ");
  return names;
}

std::string formats() {
  std::string names;
  for (const Format& format : all_formats()) names.append(format.name).append(" ");
  return names;
}

std::string settings() {
  std::string text;
  for (const Setting& setting : all_settings()) text.append(setting.name).append(" ");
  return text;
}

/// _korvex_offer BEFORE WORD...: a line for every word that may come next, or FILES.
std::string offer_function() {
  std::string values;
  std::string options;
  for (const Symbology& symbology : symbologies()) add(symbology, values, options);
  std::string text = "_korvex_offer() {\n  local before=$1 symbology= own= word\n  shift\n";
  text += "  if [ $# = 0 ]; then printf '%s\\n' draw batch list call completion; return; fi\n";
  text += "  for word in \"$@\"; do\n    case \" " + names() +
          "\" in *\" $word \"*) symbology=$word; break ;; esac\n  done\n";
  text += "  case $symbology:$before in\n" + values + "  *)\n";
  text += "  case $before in\n    " + std::string(kFileOptions) + ") echo FILES ;;\n";
  text += "    --format) " + offer(formats()) + "    --symbology) " + offer(names()) +
          "    --background|--foreground) " + offer("black white") + "    *)\n";
  text += "      case $symbology in\n" + options + "      esac\n";
  text += "      case $1 in\n        draw) if [ -z \"$symbology\" ]; then " + std::string("printf '%s\\n' ") +
          names() + "; else printf '%s\\n' $(echo \"$own\") " + settings() + std::string(kDrawOptions) +
          "; fi ;;\n";
  text += "        batch) if [ $# = 1 ]; then echo FILES; else " + std::string("printf '%s\\n' ") +
          settings() + std::string(kBatchOptions) + "; fi ;;\n";
  text += "        list) " + offer("--json --help") + "        completion) " + offer("bash zsh");
  text += "        *) echo FILES ;;\n      esac ;;\n  esac ;;\n  esac\n}\n";
  return text;
}

}  // namespace

int completion_command(const std::vector<std::string>& arguments) {
  CommandLine line("korvex completion", "Prints what makes a shell complete the words of korvex.",
                   "For this shell alone:  source <(korvex completion bash)");
  std::optional<std::string> shell;
  line.positional("SHELL", shell, "bash or zsh");
  if (!line.parse(arguments)) return 0;
  if (shell != "bash" && shell != "zsh") {
    throw UsageError("The shell is bash or zsh, not \"" + printable(shell.value_or("")) + "\".");
  }
  const bool is_zsh = shell == "zsh";
  const std::string text =
      (is_zsh ? "#compdef korvex\n" : "") + offer_function() + std::string(is_zsh ? kZsh : kBash);
  std::fputs(text.c_str(), stdout);
  return 0;
}

}  // namespace korvex::cli
