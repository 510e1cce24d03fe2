# Writes the man page of a command-line tool with help2man, from the built tool
# itself: its --help, a COMMANDS section made of every subcommand's --help, and
# its --version (or VERSION when the tool has no --version).
# Run with -P; takes TOOL (the built executable), NAME (one line: what it is), VERSION, HELP2MAN, OUTPUT.
cmake_minimum_required(VERSION 3.25)
foreach(variable TOOL NAME VERSION HELP2MAN OUTPUT)
  if(NOT ${variable})
    message(FATAL_ERROR "ManPage: ${variable} is required")
  endif()
endforeach()

get_filename_component(tool_dir ${TOOL} DIRECTORY)
get_filename_component(tool_name ${TOOL} NAME)
# Run by name from PATH, so that the usage lines say "refpage", not the build path.
set(ENV{PATH} "${tool_dir}:$ENV{PATH}")

execute_process(COMMAND ${tool_name} --help OUTPUT_VARIABLE help RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "ManPage: ${tool_name} --help failed (${status})")
endif()

# Subcommands: the first word of every indented line after the "Subcommands:" heading.
set(commands "")
if(help MATCHES "\n[Ss][Uu][Bb][Cc][Oo][Mm][Mm][Aa][Nn][Dd][Ss]:\n(.*)$")
  string(REPLACE "\n" ";" lines "${CMAKE_MATCH_1}")
  foreach(line IN LISTS lines)
    if(line MATCHES "^  +([a-z][a-z0-9-]*)( |$)")
      list(APPEND commands ${CMAKE_MATCH_1})
    elseif(NOT line MATCHES "^ ")
      break()
    endif()
  endforeach()
endif()

# The lines of `text` as a list; semicolons kept as a token.
function(lines_of text out)
  string(REPLACE ";" "@SEMICOLON@" text "${text}")
  string(REGEX REPLACE "\n$" "" text "${text}")
  string(REPLACE "\n" ";" lines "${text}")
  set(${out} "${lines}" PARENT_SCOPE)
endfunction()
lines_of("${help}" help_lines)
list(LENGTH help_lines help_count)

set(include_text "[COMMANDS]\n")
foreach(command IN LISTS commands)
  execute_process(COMMAND ${tool_name} ${command} --help OUTPUT_VARIABLE command_help RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "ManPage: ${tool_name} ${command} --help failed (${status})")
  endif()
  # Lines that end the tool's own --help too (notes every command repeats) are shown once, above.
  lines_of("${command_help}" command_lines)
  list(LENGTH command_lines count)
  set(common 0)
  while(common LESS count AND common LESS help_count)
    math(EXPR from_command "${count} - 1 - ${common}")
    math(EXPR from_help "${help_count} - 1 - ${common}")
    list(GET command_lines ${from_command} a)
    list(GET help_lines ${from_help} b)
    if(NOT a STREQUAL b)
      break()
    endif()
    math(EXPR common "${common} + 1")
  endwhile()
  math(EXPR kept "${count} - ${common}")
  list(SUBLIST command_lines 0 ${kept} command_lines)
  list(JOIN command_lines "\n" command_help)
  string(REPLACE "@SEMICOLON@" ";" command_help "${command_help}\n")
  # roff: backslashes escaped, no line may start with a control character.
  string(REPLACE "\\" "\\e" command_help "${command_help}")
  string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" command_help "${command_help}")
  string(APPEND include_text ".SS \"${tool_name} ${command}\"\n.nf\n${command_help}.fi\n")
endforeach()
get_filename_component(output_dir ${OUTPUT} DIRECTORY)
set(include_file ${output_dir}/${tool_name}.h2m)
file(WRITE ${include_file} "${include_text}")

execute_process(COMMAND ${tool_name} --version OUTPUT_VARIABLE version_text RESULT_VARIABLE status ERROR_QUIET)
set(version_option "")
if(NOT status EQUAL 0 OR NOT version_text MATCHES "[0-9]+\\.[0-9]+")
  set(version_option "--version-string=${VERSION}")
endif()

execute_process(COMMAND ${HELP2MAN} --no-info --section=1 "--name=${NAME}" ${version_option}
    --include=${include_file} --output=${OUTPUT} ${tool_name}
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "ManPage: help2man failed (${status})")
endif()
