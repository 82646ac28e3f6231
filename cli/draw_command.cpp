// `korvex draw`: the command line becomes a request, the family draws it, and every output gets its bytes.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "commands.hpp"
#include "data_source.hpp"
#include "draw_arguments.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "formats/formats.hpp"
#include "formats/terminal.hpp"
#include "job.hpp"
#include "symbologies.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

void say(const std::string& sentence) {
  std::fprintf(stderr, "korvex: %s\n", sentence.c_str());
}

std::vector<Output> outputs_of(const DrawArguments& arguments) {
  if (!arguments.format.empty() && find_format(arguments.format) == nullptr) {
    throw UsageError("There is no format \"" + printable(arguments.format) + "\"; there are " +
                     format_names() + ".");
  }
  std::vector<Output> outputs;
  for (const std::string& path : arguments.outputs) {
    outputs.push_back(output_of(path, arguments.format));
  }
  if (outputs.empty() && !arguments.format.empty()) outputs.push_back({"-", find_format(arguments.format)});
  return outputs;
}

void say_what_was_chosen(const Drawing& drawing, const Symbology& symbology) {
  for (const std::string& note : drawing.notes) say(std::string(symbology.title) + ": " + note + ".");
  for (const Picture& picture : drawing.pictures) {
    const Box whole = bounds(picture);
    say("The picture has " + decimal(whole.width, 2) + " x " + decimal(whole.height, 2) +
        " modules with its quiet zone.");
  }
}

void draw_in_terminal(const Drawing& drawing, const Style& style) {
  const Terminal terminal = standard_terminal();
  std::string lines;
  for (const Picture& picture : drawing.pictures) lines += terminal_lines(picture, style, terminal);
  write_files({{"-", std::move(lines)}});
}

int draw(const DrawArguments& arguments) {
  const std::vector<Output> outputs = outputs_of(arguments);
  const Job job{arguments.symbology, arguments.options, arguments.settings,
                read_data(arguments.data, arguments.data_file), !arguments.data_file.empty()};
  const DrawnJob drawn = draw_job(job);
  for (const std::string& warning : drawn.drawing.warnings) say(warning);
  for (const std::string& remark : drawn.remarks) say(remark);
  if (arguments.is_verbose) say_what_was_chosen(drawn.drawing, *job.symbology);
  if (outputs.empty()) {
    draw_in_terminal(drawn.drawing, drawn.style);
  } else {
    write_files(render(drawn, outputs, job.settings));
  }
  return 0;
}

}  // namespace

int draw_command(const std::vector<std::string>& arguments) {
  const std::optional<DrawArguments> parsed = parse_draw_arguments(arguments);
  return parsed ? draw(*parsed) : 0;
}

}  // namespace korvex::cli
