/*===- TarnUtilities/container/TarnFortranBinding.h - The _F entry points -===*
 *
 * Every plain entry point that Fortran (and C) code calls, with unmangled
 * names. Objects cross the border as opaque handles (the address of a
 * library object, a type(c_ptr) in Fortran): an Init entry point creates
 * the object and stores its handle, the matching Release destroys it, and
 * ZEL_NULLIFY_C_PTR resets a handle variable.
 *
 * Conventions (docs/fortran.md has the full table of status values):
 *   - Arguments named "by reference" in Fortran are pointers here; the rest
 *     are values. Integers are 32-bit, reals float or double as named.
 *   - status: optional (may be null). Set to STATUS_OK (0) on entry, and to
 *     a negative ZelStatusCode when the call fails; the failure is also
 *     logged at error level as "Failure in method NAME \n<message>".
 *   - Entry points without a status log a failure, report it through
 *     ZEL_ApplicationTerminator and end the process with exit code 1.
 *   - Text comes in as characters plus a length (Fortran strings are not
 *     zero-terminated); file names are trimmed and must be UTF-8. Text goes
 *     out blank-padded to the caller's length and is never zero-terminated.
 *   - Column numbers of the CSV table loader and point numbers of the search
 *     tree count from 1.
 *
 * Example (C):
 *   void* csv = NULL;
 *   int32_t status;
 *   CsvFileWriter_Init_F(&csv, "out.csv", 7, 0, &status);
 *   CsvFileWriter_AppendReal_F(csv, 0.5, &status);
 *   CsvFileWriter_FlushCsvLine_F(csv, &status);
 *   CsvFileWriter_Release_F(csv, &status);
 *
 * Usable from C and C++; the Fortran module fortran/tarn_utilities.f90
 * declares the same entry points.
 *
 *===----------------------------------------------------------------------===*/
#ifndef TARNUTILITIES_CONTAINER_TARNFORTRANBINDING_H
#define TARNUTILITIES_CONTAINER_TARNFORTRANBINDING_H

#include "TarnUtilities/Export.h"

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Handles ------------------------------------------------------------ */

/** Stores null in *handle (nothing for a null pointer). */
TARN_API void ZEL_NULLIFY_C_PTR(void** handle);

/* ---- ZEL_IntArray (no status: failures end the process) ------------------ */

TARN_API void IntArray_Init_F(void** handle);
/** Destroys the array; a null handle does nothing. */
TARN_API void IntArray_Release_F(void* handle);
/** *handle = *source (a deep copy). */
TARN_API void IntArray_Assign_F(void* handle, void* source);
TARN_API void IntArray_PushBack_F(void* handle, const int32_t* value);
TARN_API void IntArray_Reserve_F(void* handle, const int32_t* count);
TARN_API void IntArray_Resize_F(void* handle, const int32_t* count);
TARN_API void IntArray_SortAscending_F(void* handle);
/** Sorts and keeps one of each value. */
TARN_API void IntArray_DeleteDoublets_F(void* handle);

/* ---- ZEL_DoubleArray (no status: failures end the process) --------------- */

TARN_API void DoubleArray_Init_F(void** handle);
TARN_API void DoubleArray_Release_F(void* handle);
TARN_API void DoubleArray_Assign_F(void* handle, void* source);
TARN_API void DoubleArray_Reserve_F(void* handle, const int32_t* count);
TARN_API void DoubleArray_Resize_F(void* handle, const int32_t* count);

/* ---- CsvLineWriter -------------------------------------------------------- */

/** A line writer of *capacity characters with the separator ", ". */
TARN_API void CsvLineWriter_Init_F(void** handle, const int32_t* capacity, int32_t* status);
TARN_API void CsvLineWriter_Release_F(void* handle, int32_t* status);
/** Empties the line; a null handle does nothing. */
TARN_API void CsvLineWriter_Clear_F(void* handle, int32_t* status);
TARN_API void CsvLineWriter_AppendValueInt_F(void* handle, int32_t value, int32_t* status);
TARN_API void CsvLineWriter_AppendValueDble_F(void* handle, double value, int32_t* status);
/** Scientific notation with `precision` decimals. */
TARN_API void CsvLineWriter_AppendValueDblePrec_F(void* handle, double value, int32_t precision,
                                                  int32_t* status);
/** The shortest text of the float, appended as a string. */
TARN_API void CsvLineWriter_AppendValueReal_F(void* handle, float value, int32_t* status);
/** Exactly *length characters, as they are (not trimmed). */
TARN_API void CsvLineWriter_AppendValueString_F(void* handle, const char* chars,
                                                const int32_t* length, int32_t* status);

/* ---- TarnCsvFileWriter ----------------------------------------------------- */

/** mode 0 creates or empties the file, 1 appends. A file that cannot be
 *  opened gives ERR_FILE_IO; the writer is created all the same and must be
 *  released. */
TARN_API void CsvFileWriter_Init_F(void** handle, const char* name, int32_t nameLength,
                                   int32_t mode, int32_t* status);
TARN_API void CsvFileWriter_Release_F(void* handle, int32_t* status);
TARN_API void CsvFileWriter_AppendInt_F(void* handle, int32_t value, int32_t* status);
TARN_API void CsvFileWriter_AppendReal_F(void* handle, double value, int32_t* status);
/** Fixed notation rounded to `precision` decimals. */
TARN_API void CsvFileWriter_AppendRealPrec_F(void* handle, double value, int32_t precision,
                                             int32_t* status);
/** Writes the line and "\n"; ERR_FILE_IO if that fails or no file is open. */
TARN_API void CsvFileWriter_FlushCsvLine_F(void* handle, int32_t* status);
/** Writes `length` characters and "\n" as a line of their own. */
TARN_API void CsvFileWriter_WriteLine_F(void* handle, const char* chars, int32_t length,
                                        int32_t* status);

/* ---- ZEL_CsvTableWriter ---------------------------------------------------- */

TARN_API void ZEL_CsvTableWriter_Init_F(void** handle, const char* name, const int32_t* nameLength,
                                        const int32_t* maxColumns, int32_t* status);
/** Remembers the line writer (a CsvLineWriter handle, not owned). */
TARN_API void ZEL_CsvTableWriter_AppendCsvLine_F(void* handle, void* lineWriter, int32_t* status);
TARN_API void ZEL_CsvTableWriter_WriteToFile_F(void* handle, int32_t* status);
TARN_API void ZEL_CsvTableWriter_Release_F(void* handle, int32_t* status);

/* ---- ZEL_CsvTableLoader ---------------------------------------------------- */

/** Loads the whole file. On failure no loader is created (handle null). */
TARN_API void ZEL_CsvTableLoader_Init_F(void** handle, const char* name, const int32_t* nameLength,
                                        int32_t* status);
TARN_API void ZEL_CsvTableLoader_Release_F(void* handle, int32_t* status);
/** Data rows (the titles row not counted); 0 for a null handle. */
TARN_API int32_t ZEL_CsvTableLoader_NumRows_F(void* handle);
/** Columns; 0 for a null handle. */
TARN_API int32_t ZEL_CsvTableLoader_NumColumns_F(void* handle);
/** Title of column *column (from 1), blank-padded to *length characters. */
TARN_API void ZEL_CsvTableLoader_GetColTitle_F(void* handle, const int32_t* column, char* title,
                                               const int32_t* length, int32_t* status);
/** Column *column (from 1) as a new ZEL_IntArray; the caller releases it. */
TARN_API void ZEL_CsvTableLoader_GetIntColData_F(void* handle, const int32_t* column,
                                                 void** intArray, int32_t* status);
/** Column *column (from 1) as a new ZEL_DoubleArray; the caller releases it. */
TARN_API void ZEL_CsvTableLoader_GetRealColData_F(void* handle, const int32_t* column,
                                                  void** doubleArray, int32_t* status);

/* ---- TarnBinFileWriter: native little-endian values, no record markers ---- */

/** Creates (or empties) the file. A file that cannot be opened gives
 *  ERR_FILE_IO; the writer is created all the same and must be released. */
TARN_API void BinFileWriter_Init_F(void** handle, const char* name, int32_t nameLength,
                                   int32_t* status);
/** Writes what is buffered, closes the file and destroys the writer. */
TARN_API void BinFileWriter_Release_F(void* handle, int32_t* status);
TARN_API void BinFileWriter_WriteInt_F(void* handle, int32_t value, int32_t* status);
TARN_API void BinFileWriter_WriteIntArray_F(void* handle, const int32_t* values, int32_t count,
                                            int32_t* status);
TARN_API void BinFileWriter_WriteReal4Array_F(void* handle, const float* values, int32_t count,
                                              int32_t* status);
TARN_API void BinFileWriter_WriteReal8Array_F(void* handle, const double* values, int32_t count,
                                              int32_t* status);

/* ---- TarnFileUtil ---------------------------------------------------------- */

TARN_API void TarnFileUtil_Delete_F(const char* name, int32_t length, int32_t* status);
/** *result = 1 if something exists under the name, else 0. */
TARN_API void TarnFileUtil_FileExists_F(const char* name, int32_t length, int32_t* result,
                                        int32_t* status);
TARN_API void TarnFileUtil_GetCwd_F(char* out, int32_t capacity, int32_t* status);
TARN_API void TarnFileUtil_GetFullPathName_F(const char* name, int32_t length, char* out,
                                             int32_t capacity, int32_t* status);
/** Keeps the pointer and the length (not a copy) for the next user open. */
TARN_API void TarnFileUtil_UserOpenWin_SetFilename_F(const char* name, int32_t length);
/** Opens the name kept by TarnFileUtil_UserOpenWin_SetFilename_F with
 *  open(2), mapping the Win32 access and creation values; returns the file
 *  descriptor, -1 on failure, 0 at once if `fileName` is null. */
TARN_API int32_t TarnFileUtil_UserOpenWin_F(const char* fileName, const int32_t* desiredAccess,
                                            const int32_t* shareMode, const void* unused,
                                            const int32_t* creationDisposition);

/* ---- ZEL_SearchTree3D: points numbered from 1 in the order added ---------- */
/* The handle goes by reference here (a pointer to the handle variable).    */

TARN_API void SearchTree3D_Init_F(void** handle, int32_t* status);
/** Appends the point (*x, *y, *z); its number is the count of points so far. */
TARN_API void SearchTree3D_AddPoint_F(void* const* handle, const double* x, const double* y,
                                      const double* z, int32_t* status);
/** Builds the tree over every point added so far, 12 points per leaf. */
TARN_API void SearchTree3D_CreateTree_F(void* const* handle, int32_t* status);
/** *number = the number of the point nearest to (*x, *y, *z); of points at
 *  the same distance, the one the search meets first. Before any
 *  CreateTree, or on a tree of no points: *number = 0 and ERR_NOT_FOUND. */
TARN_API void SearchTree3D_FindNearestPoint_F(void* const* handle, const double* x, const double* y,
                                              const double* z, int32_t* number, int32_t* status);
/** Destroys the tree and sets *handle to null; a null handle does nothing. */
TARN_API void SearchTree3D_Release_F(void** handle, int32_t* status);

/* ---- Number formatting ----------------------------------------------------- */

/** "1-5, 7, 9-12": runs of three or more consecutive values as ranges. */
TARN_API void FormatUtil_PrintIntList_F(const int32_t* values, const int32_t* count, char* out,
                                        const int32_t* capacity, int32_t* status);
/** "0.1, 2.5, 1.0e+5": the shortest round-trip text of each value. */
TARN_API void FormatUtil_PrintDbleList_F(const double* values, const int32_t* count, char* out,
                                         const int32_t* capacity, int32_t* status);
/** The shortest text of the float, blank-padded; '*' in every position if
 *  it does not fit. */
TARN_API void FormatUtil_float_to_str_F(float value, char* out, int32_t capacity);

/* ---- Integer-coded Boolean vector ------------------------------------------ */

/** flags[i] = bit i of *code (1 or 0), for i = 0..31. */
TARN_API void IntegerCodedBoolVector_ToArray_F(const int32_t* code, int32_t* flags);
/** *code = the integer whose bit i is set where flags[i] != 0, i = 0..31. */
TARN_API void IntegerCodedBoolVector_ToInt_F(int32_t* code, const int32_t* flags);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* TARNUTILITIES_CONTAINER_TARNFORTRANBINDING_H */
