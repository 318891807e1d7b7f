# velor_add_resources: compiles a resource description at build time, from a consumer's CMake.
#
#   velor_add_resources(<target> OUTPUT <dir> SOURCES <file.vd>
#                       [INCLUDE_DIRS <dir>...] [DEFINES <NAME[=body]>...])
#
# Makes the custom target <target>, built by default, that runs velor on the description and
# writes its resources below <dir> (relative to the current binary folder): one file per resource
# in <dir>/vlbk_<type>/<id>.vlbk, plus the empty output file <dir>/<target>.rsrc. The compiler
# reports every file it read in a dependency file, so the resources are compiled again exactly
# when the description, a file it includes or a file a resource takes its bytes from has changed.
#
# A folder holds the resources of one description: velor refuses a second source there, and each
# run removes every ".vlbk" file below its folder. Give each target a folder of its own, not one
# inside another's, and #include further descriptions from the one source. The folder is also the
# target's property VELOR_OUTPUT_DIRECTORY, for the code that opens it at run time.
include_guard(GLOBAL)

if(CMAKE_VERSION VERSION_LESS 3.20)
  message(FATAL_ERROR "velor_add_resources needs CMake 3.20 or later for its dependency files")
endif()

function(velor_add_resources target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "OUTPUT" "SOURCES;INCLUDE_DIRS;DEFINES")
  set(context "velor_add_resources(${target})")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "${context}: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT arg_OUTPUT)
    message(FATAL_ERROR "${context}: OUTPUT <dir> is missing")
  endif()
  list(LENGTH arg_SOURCES source_count)
  if(NOT source_count EQUAL 1)
    message(FATAL_ERROR "${context}: SOURCES needs exactly one .vd file, got ${source_count}; "
                        "#include the other descriptions from it")
  endif()
  if(TARGET ${target})
    message(FATAL_ERROR "${context}: a target of that name exists already")
  endif()

  cmake_path(ABSOLUTE_PATH arg_OUTPUT BASE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}" NORMALIZE
             OUTPUT_VARIABLE output)
  cmake_path(ABSOLUTE_PATH arg_SOURCES BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE
             OUTPUT_VARIABLE source)
  set(options)
  foreach(dir IN LISTS arg_INCLUDE_DIRS)
    cmake_path(ABSOLUTE_PATH dir BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE)
    list(APPEND options -i "${dir}")
  endforeach()
  foreach(definition IN LISTS arg_DEFINES)
    list(APPEND options -d "${definition}")
  endforeach()

  set(stamp "${output}/${target}.rsrc")
  # The variable's value is a file name, a blank and then the target, so the name must not hold a
  # blank: it is given relative to the working folder, and target names have none.
  set(depfile "${target}.velor.d")
  # Under the older rule Ninja meets the output under another spelling in the dependency file and
  # compiles the resources in every build; the newer rule holds for this command alone.
  cmake_policy(PUSH)
  cmake_policy(SET CMP0116 NEW)
  add_custom_command(
    OUTPUT "${stamp}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${output}"
    COMMAND "${CMAKE_COMMAND}" -E env "VELOR_DEPENDENCIES_OUTPUT=${depfile}"
            "$<TARGET_FILE:Velor::velor>" ${options} -o "${stamp}" "${source}"
    DEPENDS "${source}" "$<TARGET_FILE:Velor::velor>"
    DEPFILE "${CMAKE_CURRENT_BINARY_DIR}/${depfile}"
    WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
    COMMENT "Compiling VELOR resources ${target}"
    VERBATIM)
  cmake_policy(POP)
  add_custom_target(${target} ALL DEPENDS "${stamp}")
  set_target_properties(${target} PROPERTIES VELOR_OUTPUT_DIRECTORY "${output}")
endfunction()
