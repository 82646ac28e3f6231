# What Windows gets: KORVEX32.dll, korvex.exe that loads it, and the programs that test it.
enable_language(RC)

# Nothing but system DLLs is needed where these run; the code moves in memory, and no data is executed. Without the
# time of linking, whoever builds them gets the same bytes.
add_link_options(-static -static-libgcc -static-libstdc++ -Wl,--dynamicbase,--nxcompat,--no-insert-timestamp
                 $<$<EQUAL:${CMAKE_SIZEOF_VOID_P},8>:-Wl,--high-entropy-va> $<$<CONFIG:Release>:-s>)

# ---- KORVEX32.dll: exactly the thirteen names of the .def file ----
configure_file(src/frame/korvex32.rc.in korvex32.rc @ONLY)
add_library(KORVEX32 SHARED ${library_sources} src/frame/korvex32.def ${CMAKE_CURRENT_BINARY_DIR}/korvex32.rc)
target_include_directories(KORVEX32 PUBLIC include PRIVATE src)
target_link_options(KORVEX32 PRIVATE -Wl,--kill-at)
target_link_libraries(KORVEX32 PRIVATE gdi32)
set_target_properties(KORVEX32 PROPERTIES PREFIX "" OUTPUT_NAME KORVEX32)
korvex_flags(KORVEX32)

# ---- korvex.exe: the command's `call` on GDI ----
if(KORVEX_CLI)
  # Header-only libraries of the building machine. Its other headers are for its own system and stay out of sight.
  set(host_headers ${CMAKE_CURRENT_BINARY_DIR}/host-headers)
  file(MAKE_DIRECTORY ${host_headers})
  foreach(library CLI nlohmann)
    find_path(${library}_PARENT ${library} PATHS /usr/local/include /usr/include REQUIRED
              NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    file(CREATE_LINK ${${library}_PARENT}/${library} ${host_headers}/${library} SYMBOLIC)
  endforeach()

  file(GLOB command_sources CONFIGURE_DEPENDS cli/call/*.cpp)
  list(FILTER command_sources EXCLUDE REGEX "(_linked|_memory)\\.cpp$")
  add_executable(korvex-cli ${command_sources} cli/main_gdi.cpp cli/call_command.cpp cli/command_line.cpp cli/words.cpp)
  target_include_directories(korvex-cli PRIVATE cli include)
  target_include_directories(korvex-cli SYSTEM PRIVATE ${host_headers})
  target_link_libraries(korvex-cli PRIVATE gdi32)
  target_link_options(korvex-cli PRIVATE -municode)
  set_target_properties(korvex-cli PROPERTIES OUTPUT_NAME korvex)
  korvex_flags(korvex-cli)
  add_dependencies(korvex-cli KORVEX32)
endif()

if(KORVEX_TESTS)
  add_subdirectory(tests/windows)
endif()
