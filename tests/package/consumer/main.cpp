// A program that uses the installed TarnUtilities package.
#include <TarnUtilities/TarnUtilities.h>

#include <cstdio>

int main() {
  try {
    throw ZEL_Failure(ZEL_Code("183807301111"), ZEL_MESSAGE("consumer %d", 1), "");
  } catch (const ZEL_Exception& e) {
    if (e.GetStatusCode() != ERR_INTERNAL || e.GetMessage() != "consumer 1")
      return 1;
  }
  if (StatuscodeToText(-3) != "ERR_FILE_IO")
    return 1;
  std::puts("consumer OK");
  return 0;
}
