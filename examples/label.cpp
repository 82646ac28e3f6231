// An EAN-13 symbol as an SVG picture on standard output:  label 400638133393 > label.svg
#include <iostream>
#include <korvex/linear.hpp>

int main(int argc, char** argv) {
  const korvex::linear::Options options{.symbology = korvex::linear::Symbology::ean13};
  const auto symbol = korvex::linear::encode(options, argc > 1 ? argv[1] : "400638133393");
  if (!symbol) {
    std::cerr << symbol.error().message << '\n';
    return 1;
  }
  const auto quiet = korvex::linear::quiet_zones(options);
  const int width = quiet.left + symbol->bars.size() + quiet.right;  // modules, 0.33 mm each
  std::cout << "<svg xmlns='http://www.w3.org/2000/svg' width='" << width * 0.33
            << "mm' height='26mm' viewBox='0 0 " << width
            << " 79'><rect width='100%' height='100%' fill='white'/><path d='";
  for (int module = 0; module < symbol->bars.size(); ++module) {
    if (symbol->bars.bar(module)) std::cout << 'M' << quiet.left + module << " 0h1v69h-1z";
  }
  std::cout << "'/><text x='50%' y='78' font-size='10' text-anchor='middle'>" << symbol->text
            << "</text></svg>\n";
}
