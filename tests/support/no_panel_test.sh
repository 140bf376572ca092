#!/bin/sh
# no_panel_test.sh SOURCES COMPILER OPTION...: with these options no header of the boxes behind the shell is found,
# and the shell's own are.
set -e
cd "$1"
shift
headers=$(find panels script waveform workbench -name '*.h')
cd / # the compiler would find them here
{
  echo '#include "shell/application.h"'
  echo "$headers" | sed 's/.*/#if __has_include("&")\n#error "& can be included"\n#endif/'
} | "$@" -std=c++20 -fsyntax-only -x c++ -
