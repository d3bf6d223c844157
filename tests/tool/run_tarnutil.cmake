# Runs tarnutil once and checks its exit code and output.
#   -DTOOL=<program> -DARGS=<words separated by |> -DEXIT=<code>
#   -DOUT=<regex standard output must match> -DERR=<regex standard error must match>
# An empty OUT or ERR is not checked.
string(REPLACE "|" ";" words "${ARGS}")
execute_process(COMMAND ${TOOL} ${words}
  RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
set(report "tarnutil ${words}\nexit code ${code}\n--- stdout\n${out}--- stderr\n${err}")
if(NOT code STREQUAL EXIT)
  message(FATAL_ERROR "exit code ${EXIT} expected\n${report}")
endif()
if(NOT OUT STREQUAL "" AND NOT out MATCHES "${OUT}")
  message(FATAL_ERROR "standard output does not match '${OUT}'\n${report}")
endif()
if(NOT ERR STREQUAL "" AND NOT err MATCHES "${ERR}")
  message(FATAL_ERROR "standard error does not match '${ERR}'\n${report}")
endif()
