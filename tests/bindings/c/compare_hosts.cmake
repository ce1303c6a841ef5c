# Runs the two hosts of examples/: both print the same receipt. Its time is the computer's.
foreach(host IN ITEMS C CPP)
  execute_process(COMMAND ${${host}_HOST} ${DEFINITION} OUTPUT_VARIABLE ${host}_PAPER
                  COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "[0-9][0-9]/[0-9][0-9]/[0-9]+ [0-9][0-9]:[0-9][0-9]" "TIME" ${host}_PAPER
         "${${host}_PAPER}")
endforeach()
if(NOT C_PAPER MATCHES "CAFFE.*CORNETTO.*TOTALE COMPLESSIVO +3,90" OR NOT C_PAPER STREQUAL CPP_PAPER)
  message(FATAL_ERROR "The host in C prints\n${C_PAPER}\nand that in C++\n${CPP_PAPER}")
endif()
