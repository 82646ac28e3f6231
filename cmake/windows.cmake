# KORVEX32.dll: exactly the thirteen names of the .def file, the runtime linked in.
add_library(KORVEX32 SHARED ${library_sources} src/frame/korvex32.def)
target_include_directories(KORVEX32 PUBLIC include PRIVATE src)
target_link_options(KORVEX32 PRIVATE -static -static-libgcc -static-libstdc++ -Wl,--kill-at)
target_link_libraries(KORVEX32 PRIVATE gdi32)
set_target_properties(KORVEX32 PROPERTIES PREFIX "" OUTPUT_NAME KORVEX32)
korvex_flags(KORVEX32)
