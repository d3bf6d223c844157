!===- fortran/tarn_utilities.f90 - TarnUtilities for Fortran ---------------===!
!
! One module for Fortran programs that use TarnUtilities:
!
!   * BIND(C) interfaces to every _F entry point of the library, under the
!     entry points' own names (see TarnUtilities/container/TarnFortranBinding.h);
!   * BIND(C) types that mirror ZEL_IntArray and ZEL_DoubleArray (size and
!     capacity as 64-bit integers, then the data address: 24 bytes);
!   * thin wrappers, named tarn_*, that take Fortran strings (passing their
!     length without trailing blanks), assumed-shape arrays and an optional
!     status argument.
!
! Status: 0 (TARN_STATUS_OK) or a negative library status code. A wrapper
! called without a status argument stops the program with an error message
! when the call fails, as Fortran's own statements do without stat=. The
! raw interfaces accept an omitted status as well (the library then only
! logs a failure).
!
! Example:
!   use tarn_utilities
!   type(c_ptr) :: csv
!   integer(c_int32_t) :: status
!   call tarn_csv_file_writer_init(csv, 'results.csv', status=status)
!   call CsvFileWriter_AppendReal_F(csv, 0.5_c_double, status)
!   call CsvFileWriter_FlushCsvLine_F(csv, status)
!   call CsvFileWriter_Release_F(csv, status)
!
!===------------------------------------------------------------------------===!
module tarn_utilities
  use, intrinsic :: iso_c_binding
  use, intrinsic :: iso_fortran_env, only: error_unit
  implicit none
  private
  public :: c_ptr, c_null_ptr, c_associated, c_int32_t, c_int64_t, c_float, c_double, c_char

  ! ---- Status codes (ZelStatusCode) ----------------------------------------
  integer(c_int32_t), parameter, public :: TARN_STATUS_OK = 0
  integer(c_int32_t), parameter, public :: TARN_ERR_INTERNAL = -1
  integer(c_int32_t), parameter, public :: TARN_ERR_OUT_OF_MEMORY = -2
  integer(c_int32_t), parameter, public :: TARN_ERR_FILE_IO = -3
  integer(c_int32_t), parameter, public :: TARN_ERR_DATA_CORRUPTED = -4
  integer(c_int32_t), parameter, public :: TARN_ERR_OUT_OF_RANGE = -5
  integer(c_int32_t), parameter, public :: TARN_ERR_NOT_FOUND = -8
  integer(c_int32_t), parameter, public :: TARN_ERR_INVALID_ARGUMENT = -9
  integer(c_int32_t), parameter, public :: TARN_ERR_INSUFFICIENT_RESULT_SPACE = -11
  integer(c_int32_t), parameter, public :: TARN_ERR_USER = -14

  ! ---- Open modes and the Win32 values of the user open ----------------------
  integer(c_int32_t), parameter, public :: TARN_CSV_CREATE = 0, TARN_CSV_APPEND = 1
  integer(c_int32_t), parameter, public :: TARN_GENERIC_READ = ibset(0_c_int32_t, 31)
  integer(c_int32_t), parameter, public :: TARN_GENERIC_WRITE = ibset(0_c_int32_t, 30)
  integer(c_int32_t), parameter, public :: TARN_CREATE_NEW = 1, TARN_CREATE_ALWAYS = 2, &
      TARN_OPEN_EXISTING = 3, TARN_OPEN_ALWAYS = 4, TARN_TRUNCATE_EXISTING = 5

  !> The number of flags of an integer-coded Boolean vector.
  integer, parameter, public :: TARN_NUM_FLAGS = 32

  ! ---- The growable arrays, as the library lays them out ---------------------
  type, bind(c), public :: tarn_int_array
    integer(c_int64_t) :: size = 0      ! elements in use
    integer(c_int64_t) :: capacity = 0  ! elements the block has room for
    type(c_ptr) :: data = c_null_ptr    ! int32 elements, null when none
  end type tarn_int_array

  type, bind(c), public :: tarn_double_array
    integer(c_int64_t) :: size = 0
    integer(c_int64_t) :: capacity = 0
    type(c_ptr) :: data = c_null_ptr    ! double elements
  end type tarn_double_array

  ! Targets of the views of empty arrays.
  integer(c_int32_t), target, save :: no_ints(0)
  real(c_double), target, save :: no_doubles(0)

  ! ---- The entry points ------------------------------------------------------
  public :: ZEL_NULLIFY_C_PTR
  public :: IntArray_Init_F, IntArray_Release_F, IntArray_Assign_F, IntArray_PushBack_F, &
      IntArray_Reserve_F, IntArray_Resize_F, IntArray_SortAscending_F, IntArray_DeleteDoublets_F
  public :: DoubleArray_Init_F, DoubleArray_Release_F, DoubleArray_Assign_F, &
      DoubleArray_Reserve_F, DoubleArray_Resize_F
  public :: CsvLineWriter_Init_F, CsvLineWriter_Release_F, CsvLineWriter_Clear_F, &
      CsvLineWriter_AppendValueInt_F, CsvLineWriter_AppendValueDble_F, &
      CsvLineWriter_AppendValueDblePrec_F, CsvLineWriter_AppendValueReal_F, &
      CsvLineWriter_AppendValueString_F
  public :: CsvFileWriter_Init_F, CsvFileWriter_Release_F, CsvFileWriter_AppendInt_F, &
      CsvFileWriter_AppendReal_F, CsvFileWriter_AppendRealPrec_F, CsvFileWriter_FlushCsvLine_F, &
      CsvFileWriter_WriteLine_F
  public :: ZEL_CsvTableWriter_Init_F, ZEL_CsvTableWriter_AppendCsvLine_F, &
      ZEL_CsvTableWriter_WriteToFile_F, ZEL_CsvTableWriter_Release_F
  public :: ZEL_CsvTableLoader_Init_F, ZEL_CsvTableLoader_Release_F, ZEL_CsvTableLoader_NumRows_F, &
      ZEL_CsvTableLoader_NumColumns_F, ZEL_CsvTableLoader_GetColTitle_F, &
      ZEL_CsvTableLoader_GetIntColData_F, ZEL_CsvTableLoader_GetRealColData_F
  public :: BinFileWriter_Init_F, BinFileWriter_Release_F, BinFileWriter_WriteInt_F, &
      BinFileWriter_WriteIntArray_F, BinFileWriter_WriteReal4Array_F, BinFileWriter_WriteReal8Array_F
  public :: TarnFileUtil_Delete_F, TarnFileUtil_FileExists_F, TarnFileUtil_GetCwd_F, &
      TarnFileUtil_GetFullPathName_F, TarnFileUtil_UserOpenWin_SetFilename_F, &
      TarnFileUtil_UserOpenWin_F
  public :: SearchTree3D_Init_F, SearchTree3D_AddPoint_F, SearchTree3D_CreateTree_F, &
      SearchTree3D_FindNearestPoint_F, SearchTree3D_Release_F
  public :: FormatUtil_PrintIntList_F, FormatUtil_PrintDbleList_F, FormatUtil_float_to_str_F
  public :: IntegerCodedBoolVector_ToArray_F, IntegerCodedBoolVector_ToInt_F

  ! ---- The wrappers ----------------------------------------------------------
  public :: tarn_int_array_values, tarn_double_array_values
  public :: tarn_csv_line_writer_append_string
  public :: tarn_csv_file_writer_init, tarn_csv_file_writer_write_line
  public :: tarn_csv_table_writer_init
  public :: tarn_csv_table_loader_init, tarn_csv_table_loader_col_title
  public :: tarn_bin_file_writer_init, tarn_bin_file_writer_write
  public :: tarn_file_delete, tarn_file_exists, tarn_get_cwd, tarn_full_path_name
  public :: tarn_user_open_set_filename
  public :: tarn_search_tree_add_points, tarn_search_tree_nearest
  public :: tarn_print_int_list, tarn_print_double_list, tarn_float_to_str
  public :: tarn_flags_of, tarn_code_of

  interface
    ! -- Handles
    subroutine ZEL_NULLIFY_C_PTR(handle) bind(c, name='ZEL_NULLIFY_C_PTR')
      import :: c_ptr
      type(c_ptr), intent(inout) :: handle
    end subroutine

    ! -- ZEL_IntArray
    subroutine IntArray_Init_F(handle) bind(c, name='IntArray_Init_F')
      import :: c_ptr
      type(c_ptr), intent(out) :: handle
    end subroutine
    subroutine IntArray_Release_F(handle) bind(c, name='IntArray_Release_F')
      import :: c_ptr
      type(c_ptr), value :: handle
    end subroutine
    subroutine IntArray_Assign_F(handle, source) bind(c, name='IntArray_Assign_F')
      import :: c_ptr
      type(c_ptr), value :: handle, source
    end subroutine
    subroutine IntArray_PushBack_F(handle, value) bind(c, name='IntArray_PushBack_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(in) :: value
    end subroutine
    subroutine IntArray_Reserve_F(handle, count) bind(c, name='IntArray_Reserve_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(in) :: count
    end subroutine
    subroutine IntArray_Resize_F(handle, count) bind(c, name='IntArray_Resize_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(in) :: count
    end subroutine
    subroutine IntArray_SortAscending_F(handle) bind(c, name='IntArray_SortAscending_F')
      import :: c_ptr
      type(c_ptr), value :: handle
    end subroutine
    subroutine IntArray_DeleteDoublets_F(handle) bind(c, name='IntArray_DeleteDoublets_F')
      import :: c_ptr
      type(c_ptr), value :: handle
    end subroutine

    ! -- ZEL_DoubleArray
    subroutine DoubleArray_Init_F(handle) bind(c, name='DoubleArray_Init_F')
      import :: c_ptr
      type(c_ptr), intent(out) :: handle
    end subroutine
    subroutine DoubleArray_Release_F(handle) bind(c, name='DoubleArray_Release_F')
      import :: c_ptr
      type(c_ptr), value :: handle
    end subroutine
    subroutine DoubleArray_Assign_F(handle, source) bind(c, name='DoubleArray_Assign_F')
      import :: c_ptr
      type(c_ptr), value :: handle, source
    end subroutine
    subroutine DoubleArray_Reserve_F(handle, count) bind(c, name='DoubleArray_Reserve_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(in) :: count
    end subroutine
    subroutine DoubleArray_Resize_F(handle, count) bind(c, name='DoubleArray_Resize_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(in) :: count
    end subroutine

    ! -- CsvLineWriter
    subroutine CsvLineWriter_Init_F(handle, capacity, status) bind(c, name='CsvLineWriter_Init_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), intent(out) :: handle
      integer(c_int32_t), intent(in) :: capacity
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvLineWriter_Release_F(handle, status) bind(c, name='CsvLineWriter_Release_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvLineWriter_Clear_F(handle, status) bind(c, name='CsvLineWriter_Clear_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvLineWriter_AppendValueInt_F(handle, value, status) &
        bind(c, name='CsvLineWriter_AppendValueInt_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), value :: value
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvLineWriter_AppendValueDble_F(handle, value, status) &
        bind(c, name='CsvLineWriter_AppendValueDble_F')
      import :: c_ptr, c_int32_t, c_double
      type(c_ptr), value :: handle
      real(c_double), value :: value
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvLineWriter_AppendValueDblePrec_F(handle, value, precision, status) &
        bind(c, name='CsvLineWriter_AppendValueDblePrec_F')
      import :: c_ptr, c_int32_t, c_double
      type(c_ptr), value :: handle
      real(c_double), value :: value
      integer(c_int32_t), value :: precision
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvLineWriter_AppendValueReal_F(handle, value, status) &
        bind(c, name='CsvLineWriter_AppendValueReal_F')
      import :: c_ptr, c_int32_t, c_float
      type(c_ptr), value :: handle
      real(c_float), value :: value
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvLineWriter_AppendValueString_F(handle, chars, length, status) &
        bind(c, name='CsvLineWriter_AppendValueString_F')
      import :: c_ptr, c_int32_t, c_char
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: chars(*)
      integer(c_int32_t), intent(in) :: length
      integer(c_int32_t), intent(out), optional :: status
    end subroutine

    ! -- TarnCsvFileWriter
    subroutine CsvFileWriter_Init_F(handle, name, name_length, mode, status) &
        bind(c, name='CsvFileWriter_Init_F')
      import :: c_ptr, c_int32_t, c_char
      type(c_ptr), intent(out) :: handle
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int32_t), value :: name_length, mode
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvFileWriter_Release_F(handle, status) bind(c, name='CsvFileWriter_Release_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvFileWriter_AppendInt_F(handle, value, status) &
        bind(c, name='CsvFileWriter_AppendInt_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), value :: value
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvFileWriter_AppendReal_F(handle, value, status) &
        bind(c, name='CsvFileWriter_AppendReal_F')
      import :: c_ptr, c_int32_t, c_double
      type(c_ptr), value :: handle
      real(c_double), value :: value
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvFileWriter_AppendRealPrec_F(handle, value, precision, status) &
        bind(c, name='CsvFileWriter_AppendRealPrec_F')
      import :: c_ptr, c_int32_t, c_double
      type(c_ptr), value :: handle
      real(c_double), value :: value
      integer(c_int32_t), value :: precision
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvFileWriter_FlushCsvLine_F(handle, status) &
        bind(c, name='CsvFileWriter_FlushCsvLine_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine CsvFileWriter_WriteLine_F(handle, chars, length, status) &
        bind(c, name='CsvFileWriter_WriteLine_F')
      import :: c_ptr, c_int32_t, c_char
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: chars(*)
      integer(c_int32_t), value :: length
      integer(c_int32_t), intent(out), optional :: status
    end subroutine

    ! -- ZEL_CsvTableWriter
    subroutine ZEL_CsvTableWriter_Init_F(handle, name, name_length, max_columns, status) &
        bind(c, name='ZEL_CsvTableWriter_Init_F')
      import :: c_ptr, c_int32_t, c_char
      type(c_ptr), intent(out) :: handle
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int32_t), intent(in) :: name_length, max_columns
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine ZEL_CsvTableWriter_AppendCsvLine_F(handle, line_writer, status) &
        bind(c, name='ZEL_CsvTableWriter_AppendCsvLine_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle, line_writer
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine ZEL_CsvTableWriter_WriteToFile_F(handle, status) &
        bind(c, name='ZEL_CsvTableWriter_WriteToFile_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine ZEL_CsvTableWriter_Release_F(handle, status) &
        bind(c, name='ZEL_CsvTableWriter_Release_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine

    ! -- ZEL_CsvTableLoader (columns counted from 1)
    subroutine ZEL_CsvTableLoader_Init_F(handle, name, name_length, status) &
        bind(c, name='ZEL_CsvTableLoader_Init_F')
      import :: c_ptr, c_int32_t, c_char
      type(c_ptr), intent(out) :: handle
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int32_t), intent(in) :: name_length
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine ZEL_CsvTableLoader_Release_F(handle, status) &
        bind(c, name='ZEL_CsvTableLoader_Release_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    function ZEL_CsvTableLoader_NumRows_F(handle) result(rows) &
        bind(c, name='ZEL_CsvTableLoader_NumRows_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t) :: rows
    end function
    function ZEL_CsvTableLoader_NumColumns_F(handle) result(columns) &
        bind(c, name='ZEL_CsvTableLoader_NumColumns_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t) :: columns
    end function
    subroutine ZEL_CsvTableLoader_GetColTitle_F(handle, column, title, length, status) &
        bind(c, name='ZEL_CsvTableLoader_GetColTitle_F')
      import :: c_ptr, c_int32_t, c_char
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(in) :: column, length
      character(kind=c_char), intent(out) :: title(*)
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine ZEL_CsvTableLoader_GetIntColData_F(handle, column, int_array, status) &
        bind(c, name='ZEL_CsvTableLoader_GetIntColData_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(in) :: column
      type(c_ptr), intent(out) :: int_array
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine ZEL_CsvTableLoader_GetRealColData_F(handle, column, double_array, status) &
        bind(c, name='ZEL_CsvTableLoader_GetRealColData_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(in) :: column
      type(c_ptr), intent(out) :: double_array
      integer(c_int32_t), intent(out), optional :: status
    end subroutine

    ! -- TarnBinFileWriter
    subroutine BinFileWriter_Init_F(handle, name, name_length, status) &
        bind(c, name='BinFileWriter_Init_F')
      import :: c_ptr, c_int32_t, c_char
      type(c_ptr), intent(out) :: handle
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int32_t), value :: name_length
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine BinFileWriter_Release_F(handle, status) bind(c, name='BinFileWriter_Release_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine BinFileWriter_WriteInt_F(handle, value, status) &
        bind(c, name='BinFileWriter_WriteInt_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), value :: value
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine BinFileWriter_WriteIntArray_F(handle, values, count, status) &
        bind(c, name='BinFileWriter_WriteIntArray_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: handle
      integer(c_int32_t), intent(in) :: values(*)
      integer(c_int32_t), value :: count
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine BinFileWriter_WriteReal4Array_F(handle, values, count, status) &
        bind(c, name='BinFileWriter_WriteReal4Array_F')
      import :: c_ptr, c_int32_t, c_float
      type(c_ptr), value :: handle
      real(c_float), intent(in) :: values(*)
      integer(c_int32_t), value :: count
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine BinFileWriter_WriteReal8Array_F(handle, values, count, status) &
        bind(c, name='BinFileWriter_WriteReal8Array_F')
      import :: c_ptr, c_int32_t, c_double
      type(c_ptr), value :: handle
      real(c_double), intent(in) :: values(*)
      integer(c_int32_t), value :: count
      integer(c_int32_t), intent(out), optional :: status
    end subroutine

    ! -- TarnFileUtil
    subroutine TarnFileUtil_Delete_F(name, length, status) bind(c, name='TarnFileUtil_Delete_F')
      import :: c_int32_t, c_char
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int32_t), value :: length
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine TarnFileUtil_FileExists_F(name, length, result, status) &
        bind(c, name='TarnFileUtil_FileExists_F')
      import :: c_int32_t, c_char
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int32_t), value :: length
      integer(c_int32_t), intent(out) :: result
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine TarnFileUtil_GetCwd_F(path, capacity, status) bind(c, name='TarnFileUtil_GetCwd_F')
      import :: c_int32_t, c_char
      character(kind=c_char), intent(out) :: path(*)
      integer(c_int32_t), value :: capacity
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine TarnFileUtil_GetFullPathName_F(name, length, path, capacity, status) &
        bind(c, name='TarnFileUtil_GetFullPathName_F')
      import :: c_int32_t, c_char
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int32_t), value :: length
      character(kind=c_char), intent(out) :: path(*)
      integer(c_int32_t), value :: capacity
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine TarnFileUtil_UserOpenWin_SetFilename_F(name, length) &
        bind(c, name='TarnFileUtil_UserOpenWin_SetFilename_F')
      import :: c_int32_t, c_char
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int32_t), value :: length
    end subroutine
    function TarnFileUtil_UserOpenWin_F(file_name, desired_access, share_mode, unused, &
        creation_disposition) result(fd) bind(c, name='TarnFileUtil_UserOpenWin_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), value :: file_name, unused
      integer(c_int32_t), intent(in) :: desired_access, share_mode, creation_disposition
      integer(c_int32_t) :: fd
    end function

    ! -- ZEL_SearchTree3D (handle by reference; points numbered from 1 in the
    !    order added; buckets of 12 points)
    subroutine SearchTree3D_Init_F(handle, status) bind(c, name='SearchTree3D_Init_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), intent(out) :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine SearchTree3D_AddPoint_F(handle, x, y, z, status) &
        bind(c, name='SearchTree3D_AddPoint_F')
      import :: c_ptr, c_int32_t, c_double
      type(c_ptr), intent(in) :: handle
      real(c_double), intent(in) :: x, y, z
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine SearchTree3D_CreateTree_F(handle, status) bind(c, name='SearchTree3D_CreateTree_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), intent(in) :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    !> number: of the nearest point; 0 with TARN_ERR_NOT_FOUND before any
    !> CreateTree or on a tree of no points.
    subroutine SearchTree3D_FindNearestPoint_F(handle, x, y, z, number, status) &
        bind(c, name='SearchTree3D_FindNearestPoint_F')
      import :: c_ptr, c_int32_t, c_double
      type(c_ptr), intent(in) :: handle
      real(c_double), intent(in) :: x, y, z
      integer(c_int32_t), intent(out) :: number
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    !> Destroys the tree and sets handle to null.
    subroutine SearchTree3D_Release_F(handle, status) bind(c, name='SearchTree3D_Release_F')
      import :: c_ptr, c_int32_t
      type(c_ptr), intent(inout) :: handle
      integer(c_int32_t), intent(out), optional :: status
    end subroutine

    ! -- Number text
    subroutine FormatUtil_PrintIntList_F(values, count, text, capacity, status) &
        bind(c, name='FormatUtil_PrintIntList_F')
      import :: c_int32_t, c_char
      integer(c_int32_t), intent(in) :: values(*)
      integer(c_int32_t), intent(in) :: count, capacity
      character(kind=c_char), intent(out) :: text(*)
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine FormatUtil_PrintDbleList_F(values, count, text, capacity, status) &
        bind(c, name='FormatUtil_PrintDbleList_F')
      import :: c_int32_t, c_double, c_char
      real(c_double), intent(in) :: values(*)
      integer(c_int32_t), intent(in) :: count, capacity
      character(kind=c_char), intent(out) :: text(*)
      integer(c_int32_t), intent(out), optional :: status
    end subroutine
    subroutine FormatUtil_float_to_str_F(value, text, capacity) &
        bind(c, name='FormatUtil_float_to_str_F')
      import :: c_int32_t, c_float, c_char
      real(c_float), value :: value
      character(kind=c_char), intent(out) :: text(*)
      integer(c_int32_t), value :: capacity
    end subroutine

    ! -- Integer-coded Boolean vector
    subroutine IntegerCodedBoolVector_ToArray_F(code, flags) &
        bind(c, name='IntegerCodedBoolVector_ToArray_F')
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: code
      integer(c_int32_t), intent(out) :: flags(32)
    end subroutine
    subroutine IntegerCodedBoolVector_ToInt_F(code, flags) &
        bind(c, name='IntegerCodedBoolVector_ToInt_F')
      import :: c_int32_t
      integer(c_int32_t), intent(out) :: code
      integer(c_int32_t), intent(in) :: flags(32)
    end subroutine
  end interface

  !> Writes a whole array: integers, single or double precision reals.
  interface tarn_bin_file_writer_write
    module procedure bin_write_int32, bin_write_real32, bin_write_real64
  end interface

contains

  ! Hands a call's status to the caller, or stops the program on a failure
  ! when the caller gave no status argument.
  subroutine finish(result, status, routine)
    integer(c_int32_t), intent(in) :: result
    integer(c_int32_t), intent(out), optional :: status
    character(*), intent(in) :: routine
    if (present(status)) then
      status = result
    else if (result /= TARN_STATUS_OK) then
      write (error_unit, '(3a, i0)') 'tarn_utilities: ', routine, ' failed with status ', result
      error stop 1
    end if
  end subroutine finish

  !> The elements in use of an integer array, as a pointer into its block
  !> (valid until the array grows or is released). Empty for a null handle.
  function tarn_int_array_values(handle) result(values)
    type(c_ptr), intent(in) :: handle
    integer(c_int32_t), pointer :: values(:)
    type(tarn_int_array), pointer :: array
    values => no_ints
    if (.not. c_associated(handle)) return
    call c_f_pointer(handle, array)
    if (array%size > 0) call c_f_pointer(array%data, values, [array%size])
  end function tarn_int_array_values

  !> The elements in use of a double array (see tarn_int_array_values).
  function tarn_double_array_values(handle) result(values)
    type(c_ptr), intent(in) :: handle
    real(c_double), pointer :: values(:)
    type(tarn_double_array), pointer :: array
    values => no_doubles
    if (.not. c_associated(handle)) return
    call c_f_pointer(handle, array)
    if (array%size > 0) call c_f_pointer(array%data, values, [array%size])
  end function tarn_double_array_values

  !> Appends text without its trailing blanks to a CSV line.
  subroutine tarn_csv_line_writer_append_string(handle, text, status)
    type(c_ptr), intent(in) :: handle
    character(*), intent(in) :: text
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call CsvLineWriter_AppendValueString_F(handle, text, int(len_trim(text), c_int32_t), result)
    call finish(result, status, 'CsvLineWriter_AppendValueString_F')
  end subroutine tarn_csv_line_writer_append_string

  !> Opens a CSV file writer; mode TARN_CSV_CREATE (the default) or
  !> TARN_CSV_APPEND. The handle is set also when the file cannot be opened.
  subroutine tarn_csv_file_writer_init(handle, name, mode, status)
    type(c_ptr), intent(out) :: handle
    character(*), intent(in) :: name
    integer(c_int32_t), intent(in), optional :: mode
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result, open_mode
    open_mode = TARN_CSV_CREATE
    if (present(mode)) open_mode = mode
    call CsvFileWriter_Init_F(handle, name, int(len_trim(name), c_int32_t), open_mode, result)
    call finish(result, status, 'CsvFileWriter_Init_F')
  end subroutine tarn_csv_file_writer_init

  !> Writes a line of its own, without its trailing blanks.
  subroutine tarn_csv_file_writer_write_line(handle, line, status)
    type(c_ptr), intent(in) :: handle
    character(*), intent(in) :: line
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call CsvFileWriter_WriteLine_F(handle, line, int(len_trim(line), c_int32_t), result)
    call finish(result, status, 'CsvFileWriter_WriteLine_F')
  end subroutine tarn_csv_file_writer_write_line

  subroutine tarn_csv_table_writer_init(handle, name, max_columns, status)
    type(c_ptr), intent(out) :: handle
    character(*), intent(in) :: name
    integer(c_int32_t), intent(in) :: max_columns
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call ZEL_CsvTableWriter_Init_F(handle, name, int(len_trim(name), c_int32_t), max_columns, result)
    call finish(result, status, 'ZEL_CsvTableWriter_Init_F')
  end subroutine tarn_csv_table_writer_init

  subroutine tarn_csv_table_loader_init(handle, name, status)
    type(c_ptr), intent(out) :: handle
    character(*), intent(in) :: name
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call ZEL_CsvTableLoader_Init_F(handle, name, int(len_trim(name), c_int32_t), result)
    call finish(result, status, 'ZEL_CsvTableLoader_Init_F')
  end subroutine tarn_csv_table_loader_init

  !> The title of a column (from 1), blank-padded to len(title).
  subroutine tarn_csv_table_loader_col_title(handle, column, title, status)
    type(c_ptr), intent(in) :: handle
    integer(c_int32_t), intent(in) :: column
    character(*), intent(out) :: title
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call ZEL_CsvTableLoader_GetColTitle_F(handle, column, title, int(len(title), c_int32_t), result)
    call finish(result, status, 'ZEL_CsvTableLoader_GetColTitle_F')
  end subroutine tarn_csv_table_loader_col_title

  subroutine tarn_bin_file_writer_init(handle, name, status)
    type(c_ptr), intent(out) :: handle
    character(*), intent(in) :: name
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call BinFileWriter_Init_F(handle, name, int(len_trim(name), c_int32_t), result)
    call finish(result, status, 'BinFileWriter_Init_F')
  end subroutine tarn_bin_file_writer_init

  subroutine bin_write_int32(handle, values, status)
    type(c_ptr), intent(in) :: handle
    integer(c_int32_t), intent(in) :: values(:)
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call BinFileWriter_WriteIntArray_F(handle, values, int(size(values), c_int32_t), result)
    call finish(result, status, 'BinFileWriter_WriteIntArray_F')
  end subroutine bin_write_int32

  subroutine bin_write_real32(handle, values, status)
    type(c_ptr), intent(in) :: handle
    real(c_float), intent(in) :: values(:)
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call BinFileWriter_WriteReal4Array_F(handle, values, int(size(values), c_int32_t), result)
    call finish(result, status, 'BinFileWriter_WriteReal4Array_F')
  end subroutine bin_write_real32

  subroutine bin_write_real64(handle, values, status)
    type(c_ptr), intent(in) :: handle
    real(c_double), intent(in) :: values(:)
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call BinFileWriter_WriteReal8Array_F(handle, values, int(size(values), c_int32_t), result)
    call finish(result, status, 'BinFileWriter_WriteReal8Array_F')
  end subroutine bin_write_real64

  subroutine tarn_file_delete(name, status)
    character(*), intent(in) :: name
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call TarnFileUtil_Delete_F(name, int(len_trim(name), c_int32_t), result)
    call finish(result, status, 'TarnFileUtil_Delete_F')
  end subroutine tarn_file_delete

  !> True if something exists under the (UTF-8) name.
  logical function tarn_file_exists(name, status)
    character(*), intent(in) :: name
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result, found
    call TarnFileUtil_FileExists_F(name, int(len_trim(name), c_int32_t), found, result)
    call finish(result, status, 'TarnFileUtil_FileExists_F')
    tarn_file_exists = found /= 0
  end function tarn_file_exists

  !> The current directory (UTF-8), blank-padded to len(path).
  subroutine tarn_get_cwd(path, status)
    character(*), intent(out) :: path
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call TarnFileUtil_GetCwd_F(path, int(len(path), c_int32_t), result)
    call finish(result, status, 'TarnFileUtil_GetCwd_F')
  end subroutine tarn_get_cwd

  !> The absolute form of a name, blank-padded to len(path).
  subroutine tarn_full_path_name(name, path, status)
    character(*), intent(in) :: name
    character(*), intent(out) :: path
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call TarnFileUtil_GetFullPathName_F(name, int(len_trim(name), c_int32_t), path, &
        int(len(path), c_int32_t), result)
    call finish(result, status, 'TarnFileUtil_GetFullPathName_F')
  end subroutine tarn_full_path_name

  !> Keeps the name for the next user open. The library keeps the address
  !> of `name`, not a copy: the actual argument must stay unchanged until
  !> the file is opened.
  subroutine tarn_user_open_set_filename(name)
    character(*), intent(in) :: name
    call TarnFileUtil_UserOpenWin_SetFilename_F(name, int(len_trim(name), c_int32_t))
  end subroutine tarn_user_open_set_filename

  !> Adds the points xyz(:, 1), xyz(:, 2), ... (x, y, z in each column);
  !> they take the next numbers in that order.
  subroutine tarn_search_tree_add_points(handle, xyz, status)
    type(c_ptr), intent(in) :: handle
    real(c_double), intent(in) :: xyz(:, :)
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    integer :: i
    if (size(xyz, 1) /= 3) then
      call finish(TARN_ERR_INVALID_ARGUMENT, status, 'tarn_search_tree_add_points (not xyz(3, n))')
      return
    end if
    result = TARN_STATUS_OK
    do i = 1, size(xyz, 2)
      call SearchTree3D_AddPoint_F(handle, xyz(1, i), xyz(2, i), xyz(3, i), result)
      if (result /= TARN_STATUS_OK) exit
    end do
    call finish(result, status, 'SearchTree3D_AddPoint_F')
  end subroutine tarn_search_tree_add_points

  !> The number of the point nearest to xyz (x, y, z); 0 when the tree
  !> holds no point.
  function tarn_search_tree_nearest(handle, xyz, status) result(number)
    type(c_ptr), intent(in) :: handle
    real(c_double), intent(in) :: xyz(3)
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: number, result
    call SearchTree3D_FindNearestPoint_F(handle, xyz(1), xyz(2), xyz(3), number, result)
    call finish(result, status, 'SearchTree3D_FindNearestPoint_F')
  end function tarn_search_tree_nearest

  !> "1-5, 7, 9-12", blank-padded to len(text).
  subroutine tarn_print_int_list(values, text, status)
    integer(c_int32_t), intent(in) :: values(:)
    character(*), intent(out) :: text
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call FormatUtil_PrintIntList_F(values, int(size(values), c_int32_t), text, &
        int(len(text), c_int32_t), result)
    call finish(result, status, 'FormatUtil_PrintIntList_F')
  end subroutine tarn_print_int_list

  !> "0.1, 2.0, 1.0e+5", blank-padded to len(text).
  subroutine tarn_print_double_list(values, text, status)
    real(c_double), intent(in) :: values(:)
    character(*), intent(out) :: text
    integer(c_int32_t), intent(out), optional :: status
    integer(c_int32_t) :: result
    call FormatUtil_PrintDbleList_F(values, int(size(values), c_int32_t), text, &
        int(len(text), c_int32_t), result)
    call finish(result, status, 'FormatUtil_PrintDbleList_F')
  end subroutine tarn_print_double_list

  !> The shortest text of a float, blank-padded; all '*' if it does not fit.
  subroutine tarn_float_to_str(value, text)
    real(c_float), intent(in) :: value
    character(*), intent(out) :: text
    call FormatUtil_float_to_str_F(value, text, int(len(text), c_int32_t))
  end subroutine tarn_float_to_str

  !> The 32 flags of an integer code: flags(i) is bit i - 1.
  function tarn_flags_of(code) result(flags)
    integer(c_int32_t), intent(in) :: code
    logical :: flags(TARN_NUM_FLAGS)
    integer(c_int32_t) :: bits(TARN_NUM_FLAGS)
    call IntegerCodedBoolVector_ToArray_F(code, bits)
    flags = bits /= 0
  end function tarn_flags_of

  !> The integer code of 32 flags.
  function tarn_code_of(flags) result(code)
    logical, intent(in) :: flags(TARN_NUM_FLAGS)
    integer(c_int32_t) :: code
    call IntegerCodedBoolVector_ToInt_F(code, merge(1_c_int32_t, 0_c_int32_t, flags))
  end function tarn_code_of

end module tarn_utilities
