/* The header of the Fortran entry points, compiled as C. */
#include <TarnUtilities/container/TarnFortranBinding.h>

int32_t count_rows(void* loader) { return ZEL_CsvTableLoader_NumRows_F(loader); }
