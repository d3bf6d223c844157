!===- fortran/tests/tarn_fortran_test.f90 - The binding, tested from Fortran -===!
!
! Calls every entry point of the library's Fortran binding through the module
! tarn_utilities and checks the results as a Fortran caller sees them: arrays
! through the BIND(C) view, CSV files read back by the loader, binary files
! read back with an unformatted stream read, nearest points of the search
! tree against a brute force, status values of bad input.
! Entry points that end the process, and the log text of a failure, are run
! in a child process (this program started again with the case's name) whose
! exit code and output are checked. Exits non-zero if any check fails.
!
! Run in a scratch directory: files are created in the current directory.
!
!===------------------------------------------------------------------------===!
program tarn_fortran_test
  use, intrinsic :: iso_c_binding
  use tarn_utilities
  implicit none

  interface
    function c_close(fd) result(rc) bind(c, name='close')
      import :: c_int32_t
      integer(c_int32_t), value :: fd
      integer(c_int32_t) :: rc
    end function
    function c_write(fd, bytes, count) result(written) bind(c, name='write')
      import :: c_int32_t, c_size_t, c_char, c_long
      integer(c_int32_t), value :: fd
      character(kind=c_char), intent(in) :: bytes(*)
      integer(c_size_t), value :: count
      integer(c_long) :: written
    end function
  end interface

  integer :: failures = 0
  character(len=64) :: child_case

  if (command_argument_count() > 0) then
    call get_command_argument(1, child_case)
    call run_child_case(trim(child_case))
    stop
  end if

  call test_array_layout()
  call test_int_array()
  call test_double_array()
  call test_csv_table()
  call test_csv_file_writer()
  call test_bin_file_writer()
  call test_file_helpers()
  call test_user_open()
  call test_number_text()
  call test_search_tree()
  call test_flags()
  call test_bad_input()
  call test_child_processes()

  if (failures > 0) then
    write (*, '(i0, a)') failures, ' check(s) failed'
    error stop 1
  end if
  write (*, '(a)') 'all Fortran binding checks passed'

contains

  subroutine check(condition, what)
    logical, intent(in) :: condition
    character(*), intent(in) :: what
    if (.not. condition) then
      failures = failures + 1
      write (*, '(2a)') 'FAILED: ', what
    end if
  end subroutine check

  subroutine check_status(status, expected, what)
    integer(c_int32_t), intent(in) :: status, expected
    character(*), intent(in) :: what
    if (status /= expected) write (*, '(a, i0, a, i0)') '  status ', status, ', expected ', expected
    call check(status == expected, what)
  end subroutine check_status

  subroutine test_array_layout()
    type(tarn_int_array) :: ints
    type(tarn_double_array) :: doubles
    call check(c_sizeof(ints) == 24 .and. c_sizeof(doubles) == 24, 'arrays are 24 bytes')
  end subroutine test_array_layout

  subroutine test_int_array()
    type(c_ptr) :: h, copy
    type(tarn_int_array), pointer :: view
    integer(c_int32_t), pointer :: v(:)
    integer(c_int32_t) :: i
    call IntArray_Init_F(h)
    call c_f_pointer(h, view)
    call check(view%size == 0 .and. view%capacity == 0 .and. .not. c_associated(view%data), &
        'IntArray_Init_F: empty')
    call IntArray_PushBack_F(h, 1000_c_int32_t)
    call check(view%size == 1 .and. view%capacity == 10, 'IntArray_PushBack_F: first block of 10')
    do i = 999, 1, -1
      call IntArray_PushBack_F(h, i)
    end do
    v => tarn_int_array_values(h)
    call check(size(v) == 1000 .and. all(v == [(i, i = 1000, 1, -1)]), 'IntArray_PushBack_F: values')
    call IntArray_SortAscending_F(h)
    v => tarn_int_array_values(h)
    call check(all(v == [(i, i = 1, 1000)]), 'IntArray_SortAscending_F')
    call IntArray_PushBack_F(h, 5_c_int32_t)
    call IntArray_PushBack_F(h, 1000_c_int32_t)
    call IntArray_DeleteDoublets_F(h)
    v => tarn_int_array_values(h)
    call check(size(v) == 1000 .and. all(v == [(i, i = 1, 1000)]), 'IntArray_DeleteDoublets_F')
    call IntArray_Reserve_F(h, 5000_c_int32_t)
    call check(view%capacity == 5000 .and. view%size == 1000, 'IntArray_Reserve_F')
    call IntArray_Resize_F(h, 3_c_int32_t)
    call IntArray_Resize_F(h, 5_c_int32_t)
    v => tarn_int_array_values(h)
    call check(all(v == [1, 2, 3, 0, 0]), 'IntArray_Resize_F: shrink, then zero-filled growth')
    call IntArray_Init_F(copy)
    call IntArray_Assign_F(copy, h)
    v(1) = 42
    call check(all(tarn_int_array_values(copy) == [1, 2, 3, 0, 0]), 'IntArray_Assign_F: deep copy')
    call IntArray_Release_F(copy)
    call IntArray_Release_F(h)
    call ZEL_NULLIFY_C_PTR(h)
    call check(.not. c_associated(h), 'ZEL_NULLIFY_C_PTR')
    call IntArray_Release_F(h)
    call check(size(tarn_int_array_values(h)) == 0, 'view of a null handle is empty')
  end subroutine test_int_array

  subroutine test_double_array()
    type(c_ptr) :: h, copy
    type(tarn_double_array), pointer :: view
    real(c_double), pointer :: v(:)
    call DoubleArray_Init_F(h)
    call c_f_pointer(h, view)
    call DoubleArray_Resize_F(h, 4_c_int32_t)
    v => tarn_double_array_values(h)
    call check(size(v) == 4 .and. all(v == 0), 'DoubleArray_Resize_F: zeros')
    v = [0.5d0, -1d300, 3d-310, 2d0 / 3d0]
    call DoubleArray_Reserve_F(h, 100_c_int32_t)
    call check(view%capacity == 100 .and. view%size == 4, 'DoubleArray_Reserve_F')
    call DoubleArray_Init_F(copy)
    call DoubleArray_Assign_F(copy, h)
    call check(all(tarn_double_array_values(copy) == [0.5d0, -1d300, 3d-310, 2d0 / 3d0]), &
        'DoubleArray_Assign_F: values kept across Reserve and copied')
    call DoubleArray_Release_F(copy)
    call DoubleArray_Release_F(h)
  end subroutine test_double_array

  ! A table of five columns written through a line writer and a table writer
  ! with at most two columns per file, read back by the loader.
  subroutine test_csv_table()
    integer(c_int32_t), parameter :: ids(4) = [-20, 0, 7, 2147483647]
    real(c_double), parameter :: x(4) = [0.1d0, -1.5d300, tiny(1d0) * epsilon(1d0), 2d0 / 3d0]
    real(c_float), parameter :: r(4) = [0.1, -2.5e30, 1.17549435e-38, 3.0]
    type(c_ptr) :: line, table, loader, col
    integer(c_int32_t) :: st, i
    character(len=3) :: short_title
    character(len=16) :: title
    real(c_double), pointer :: p(:)

    call CsvLineWriter_Init_F(line, 400_c_int32_t, st)
    call check_status(st, TARN_STATUS_OK, 'CsvLineWriter_Init_F')
    call tarn_csv_table_writer_init(table, 'table.csv', 2_c_int32_t, st)
    call check_status(st, TARN_STATUS_OK, 'ZEL_CsvTableWriter_Init_F')
    call tarn_csv_line_writer_append_string(line, 'id')
    call tarn_csv_line_writer_append_string(line, 'x')
    call tarn_csv_line_writer_append_string(line, 'name')
    call tarn_csv_line_writer_append_string(line, 'r')
    call tarn_csv_line_writer_append_string(line, 'scientific')
    call ZEL_CsvTableWriter_AppendCsvLine_F(table, line, st)
    call ZEL_CsvTableWriter_WriteToFile_F(table, st)
    call check_status(st, TARN_STATUS_OK, 'ZEL_CsvTableWriter_WriteToFile_F')
    do i = 1, 4
      call CsvLineWriter_Clear_F(line, st)
      call CsvLineWriter_AppendValueInt_F(line, ids(i), st)
      call CsvLineWriter_AppendValueDble_F(line, x(i), st)
      call tarn_csv_line_writer_append_string(line, '"n ""q"""')
      call CsvLineWriter_AppendValueReal_F(line, r(i), st)
      call CsvLineWriter_AppendValueDblePrec_F(line, 12345d0 * i, 2_c_int32_t, st)
      call check_status(st, TARN_STATUS_OK, 'CsvLineWriter appends')
      call ZEL_CsvTableWriter_WriteToFile_F(table, st)
    end do
    call ZEL_CsvTableWriter_Release_F(table, st)
    call CsvLineWriter_Release_F(line, st)
    call check_status(st, TARN_STATUS_OK, 'CsvLineWriter_Release_F')

    call tarn_csv_table_loader_init(loader, 'table.csv', st)
    call check_status(st, TARN_STATUS_OK, 'ZEL_CsvTableLoader_Init_F')
    call check(ZEL_CsvTableLoader_NumRows_F(loader) == 4 .and. &
        ZEL_CsvTableLoader_NumColumns_F(loader) == 2, 'loader: 4 rows, 2 columns')
    call tarn_csv_table_loader_col_title(loader, 2_c_int32_t, title, st)
    call check(st == 0 .and. title == 'x', 'ZEL_CsvTableLoader_GetColTitle_F')
    call ZEL_CsvTableLoader_GetIntColData_F(loader, 1_c_int32_t, col, st)
    call check(all(tarn_int_array_values(col) == ids), 'ZEL_CsvTableLoader_GetIntColData_F')
    call IntArray_Release_F(col)
    call ZEL_CsvTableLoader_GetRealColData_F(loader, 2_c_int32_t, col, st)
    call check(all(tarn_double_array_values(col) == x), 'doubles read back bit for bit')
    call DoubleArray_Release_F(col)
    call ZEL_CsvTableLoader_Release_F(loader, st)

    call tarn_csv_table_loader_init(loader, 'table_1.csv', st)
    call tarn_csv_table_loader_col_title(loader, 1_c_int32_t, short_title, st)
    call check(st == TARN_ERR_INSUFFICIENT_RESULT_SPACE .and. short_title == 'nam', &
        'a title cut to a short buffer')
    call ZEL_CsvTableLoader_GetRealColData_F(loader, 2_c_int32_t, col, st)
    p => tarn_double_array_values(col)
    call check(all(real(p, c_float) == r), 'floats read back as the same floats')
    call DoubleArray_Release_F(col)
    call ZEL_CsvTableLoader_Release_F(loader, st)

    call tarn_csv_table_loader_init(loader, 'table_2.csv', st)
    call ZEL_CsvTableLoader_GetRealColData_F(loader, 1_c_int32_t, col, st)
    call check(all(tarn_double_array_values(col) == [1.23d4, 2.47d4, 3.70d4, 4.94d4]), &
        'scientific notation with 2 decimals')
    call DoubleArray_Release_F(col)
    call ZEL_CsvTableLoader_Release_F(loader, st)
    call tarn_file_delete('table.csv')
    call tarn_file_delete('table_1.csv')
    call tarn_file_delete('table_2.csv')
  end subroutine test_csv_table

  subroutine test_csv_file_writer()
    real(c_double), parameter :: x(5) = [0.1d0, -2.5d0, 3.14159265358979d0, 1d-3, 12345.6789d0]
    type(c_ptr) :: csv, loader, col
    integer(c_int32_t) :: st, i
    real(c_double), pointer :: p(:)

    call tarn_csv_file_writer_init(csv, 'file.csv', status=st)
    call check_status(st, TARN_STATUS_OK, 'CsvFileWriter_Init_F')
    call tarn_csv_file_writer_write_line(csv, 'n, value, rounded   ')
    do i = 1, 5
      if (i == 5) then ! the last row goes through a second writer in append mode
        call CsvFileWriter_Release_F(csv, st)
        call tarn_csv_file_writer_init(csv, 'file.csv', TARN_CSV_APPEND, st)
      end if
      call CsvFileWriter_AppendInt_F(csv, i, st)
      call CsvFileWriter_AppendReal_F(csv, x(i), st)
      call CsvFileWriter_AppendRealPrec_F(csv, x(i), 3_c_int32_t, st)
      call CsvFileWriter_FlushCsvLine_F(csv, st)
      call check_status(st, TARN_STATUS_OK, 'CsvFileWriter_FlushCsvLine_F')
    end do
    call CsvFileWriter_Release_F(csv, st)

    call tarn_csv_table_loader_init(loader, 'file.csv', st)
    call check(ZEL_CsvTableLoader_NumRows_F(loader) == 5, 'file writer: 5 rows')
    call ZEL_CsvTableLoader_GetIntColData_F(loader, 1_c_int32_t, col, st)
    call check(all(tarn_int_array_values(col) == [1, 2, 3, 4, 5]), 'file writer: integers')
    call IntArray_Release_F(col)
    call ZEL_CsvTableLoader_GetRealColData_F(loader, 2_c_int32_t, col, st)
    call check(all(tarn_double_array_values(col) == x), 'file writer: doubles bit for bit')
    call DoubleArray_Release_F(col)
    call ZEL_CsvTableLoader_GetRealColData_F(loader, 3_c_int32_t, col, st)
    p => tarn_double_array_values(col)
    call check(all(abs(p - anint(x * 1000) / 1000) <= 1d-12 * abs(x)), 'file writer: rounded')
    call DoubleArray_Release_F(col)
    call ZEL_CsvTableLoader_Release_F(loader, st)
    call tarn_file_delete('file.csv')
  end subroutine test_csv_file_writer

  subroutine test_bin_file_writer()
    integer(c_int32_t), parameter :: ints(3) = [-7, 0, 2147483647]
    real(c_float), parameter :: r4(2) = [0.1, -3e38]
    real(c_double), parameter :: r8(3) = [0.1d0, -1d-310, 1d308]
    integer(c_int32_t) :: st, n, back_ints(3)
    real(c_float) :: back_r4(2)
    real(c_double) :: back_r8(3)
    integer :: u, bytes
    type(c_ptr) :: bin

    call tarn_bin_file_writer_init(bin, 'data.bin', st)
    call check_status(st, TARN_STATUS_OK, 'BinFileWriter_Init_F')
    call BinFileWriter_WriteInt_F(bin, 3_c_int32_t, st)
    call tarn_bin_file_writer_write(bin, ints)
    call tarn_bin_file_writer_write(bin, r4)
    call tarn_bin_file_writer_write(bin, r8)
    call BinFileWriter_WriteIntArray_F(bin, ints, 0_c_int32_t, st)
    call BinFileWriter_Release_F(bin, st)
    call check_status(st, TARN_STATUS_OK, 'BinFileWriter_Release_F')

    open (newunit=u, file='data.bin', access='stream', form='unformatted', status='old')
    inquire (unit=u, size=bytes)
    read (u) n, back_ints(1:n), back_r4, back_r8
    close (u, status='delete')
    call check(bytes == 4 + 12 + 8 + 24, 'binary file: values only, no record markers')
    call check(n == 3 .and. all(back_ints == ints) .and. all(back_r4 == r4) .and. &
        all(back_r8 == r8), 'binary file read back with a stream read')
  end subroutine test_bin_file_writer

  subroutine test_file_helpers()
    character(len=*), parameter :: name = 'Grüße – ünïcode.csv'
    character(len=512) :: cwd, full
    character(len=4) :: short
    type(c_ptr) :: csv
    integer(c_int32_t) :: st

    call tarn_csv_file_writer_init(csv, name, status=st)
    call CsvFileWriter_Release_F(csv, st)
    call check(tarn_file_exists(name), 'TarnFileUtil_FileExists_F on a UTF-8 name')
    call tarn_get_cwd(cwd, st)
    call check(st == 0 .and. cwd(1:1) == '/', 'TarnFileUtil_GetCwd_F')
    call tarn_full_path_name('  ' // name // '  ', full, st)
    call check(st == 0 .and. full == trim(cwd) // '/' // name, 'TarnFileUtil_GetFullPathName_F')
    call tarn_get_cwd(short, st)
    call check(st == TARN_ERR_INSUFFICIENT_RESULT_SPACE .and. short == cwd(1:4), &
        'TarnFileUtil_GetCwd_F into a short buffer')
    call tarn_file_delete(name, st)
    call check(st == 0 .and. .not. tarn_file_exists(name), 'TarnFileUtil_Delete_F')
    call tarn_file_delete(name, st)
    call check_status(st, TARN_ERR_FILE_IO, 'deleting a missing file')
  end subroutine test_file_helpers

  subroutine test_user_open()
    character(len=32), save :: name = 'user öpen.dat'
    ! Any non-null first argument: the open uses the name kept before.
    character(kind=c_char), target, save :: first_argument = 'x'
    integer(c_int32_t) :: fd, st

    call tarn_user_open_set_filename(name)
    fd = TarnFileUtil_UserOpenWin_F(c_null_ptr, TARN_GENERIC_READ, 0_c_int32_t, c_null_ptr, &
        TARN_OPEN_EXISTING)
    call check(fd == 0, 'TarnFileUtil_UserOpenWin_F: 0 for a null first argument')
    fd = TarnFileUtil_UserOpenWin_F(c_loc(first_argument), TARN_GENERIC_WRITE, 0_c_int32_t, c_null_ptr, &
        TARN_CREATE_NEW)
    call check(fd > 2 .and. tarn_file_exists(name), 'TarnFileUtil_UserOpenWin_F: CREATE_NEW')
    call check(c_write(fd, 'abc', 3_c_size_t) == 3, 'GENERIC_WRITE opens for writing')
    st = c_close(fd)
    fd = TarnFileUtil_UserOpenWin_F(c_loc(first_argument), TARN_GENERIC_READ, 0_c_int32_t, &
        c_null_ptr, TARN_OPEN_EXISTING)
    call check(fd > 2 .and. c_write(fd, 'abc', 3_c_size_t) == -1, 'GENERIC_READ opens for reading only')
    st = c_close(fd)
    fd = TarnFileUtil_UserOpenWin_F(c_loc(first_argument), TARN_GENERIC_WRITE, 0_c_int32_t, c_null_ptr, &
        TARN_CREATE_NEW)
    call check(fd == -1, 'TarnFileUtil_UserOpenWin_F: CREATE_NEW of an existing file fails')
    fd = TarnFileUtil_UserOpenWin_F(c_loc(first_argument), ior(TARN_GENERIC_READ, TARN_GENERIC_WRITE), &
        0_c_int32_t, c_null_ptr, TARN_OPEN_EXISTING)
    call check(fd > 2 .and. c_write(fd, 'd', 1_c_size_t) == 1, &
        'TarnFileUtil_UserOpenWin_F: OPEN_EXISTING for reading and writing')
    st = c_close(fd)
    call tarn_file_delete(name)
  end subroutine test_user_open

  subroutine test_number_text()
    character(len=40) :: text
    character(len=8) :: short
    character(len=2) :: tiny
    integer(c_int32_t) :: st
    integer(c_int32_t), allocatable :: none(:)

    call tarn_print_int_list([1, 2, 3, 4, 5, 7, 9, 10, 11, 12], text, st)
    call check(st == 0 .and. text == '1-5, 7, 9-12', 'FormatUtil_PrintIntList_F')
    call tarn_print_int_list([1, 2, 3, 4, 5, 7, 9, 10, 11, 12], short, st)
    call check(st == TARN_ERR_INSUFFICIENT_RESULT_SPACE .and. short == '1-5, 7', &
        'FormatUtil_PrintIntList_F: whole items into a short buffer')
    allocate (none(0))
    call tarn_print_int_list(none, text, st)
    call check(st == 0 .and. text == '', 'FormatUtil_PrintIntList_F: no values')
    call tarn_print_double_list([0.1d0, 2d0, 1d5], text, st)
    call check(st == 0 .and. text == '0.1, 2.0, 1.0e+5', 'FormatUtil_PrintDbleList_F')
    call tarn_float_to_str(0.1, text)
    call check(text == '0.1', 'FormatUtil_float_to_str_F')
    call tarn_float_to_str(0.125, tiny)
    call check(tiny == '**', 'FormatUtil_float_to_str_F: stars when it does not fit')
  end subroutine test_number_text

  subroutine test_flags()
    integer(c_int32_t), parameter :: codes(6) = [0, 5, -1, 12345, huge(0_c_int32_t), &
        -huge(0_c_int32_t) - 1]
    logical :: flags(TARN_NUM_FLAGS)
    integer :: i

    flags = tarn_flags_of(5_c_int32_t)
    call check(flags(1) .and. flags(3) .and. count(flags) == 2, 'IntegerCodedBoolVector_ToArray_F')
    do i = 1, size(codes)
      flags = tarn_flags_of(codes(i))
      call check(tarn_code_of(flags) == codes(i) .and. (flags(32) .eqv. codes(i) < 0), &
          'IntegerCodedBoolVector_ToInt_F: round trip')
    end do
  end subroutine test_flags

  ! Nearest points of a cloud against a brute force. Coordinates are small
  ! multiples of 1/8, so every squared distance is exact on both sides.
  subroutine test_search_tree()
    integer, parameter :: n = 300
    type(c_ptr) :: h
    real(c_double) :: xyz(3, n), q(3), d2(n)
    integer(c_int32_t) :: i, k, st, number
    do i = 1, n
      xyz(:, i) = [mod(37 * i, 101), mod(53 * i, 103), mod(i, 7)] * 0.125_c_double
    end do
    q = 0
    call SearchTree3D_Init_F(h, st)
    call SearchTree3D_FindNearestPoint_F(h, q(1), q(2), q(3), number, st)
    call check(st == TARN_ERR_NOT_FOUND .and. number == 0, 'SearchTree3D: query before CreateTree')
    call tarn_search_tree_add_points(h, xyz(1:2, :), st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'tarn_search_tree_add_points: not xyz(3, n)')
    call tarn_search_tree_add_points(h, xyz)
    call SearchTree3D_CreateTree_F(h, st)
    call check_status(st, TARN_STATUS_OK, 'SearchTree3D_CreateTree_F')
    do k = 1, 2 * n
      ! Odd k: on the point (k + 1) / 2 itself; even k: beside it.
      i = (k + 1) / 2
      q = xyz(:, i)
      if (mod(k, 2) == 0) q = q + [3, -5, 1] * 0.0625_c_double
      d2 = (xyz(2, :) - q(2))**2 + (xyz(1, :) - q(1))**2 + (xyz(3, :) - q(3))**2
      number = tarn_search_tree_nearest(h, q)
      if (mod(k, 2) == 1) call check(number == i, 'SearchTree3D: a point finds itself')
      if (number < 1 .or. number > n) then
        call check(.false., 'SearchTree3D: number in 1..n')
        exit
      end if
      call check(d2(number) == minval(d2), 'SearchTree3D: nearest as the brute force')
    end do
    ! A point added later is found only after the next CreateTree.
    call SearchTree3D_AddPoint_F(h, 100.0_c_double, 0.0_c_double, 0.0_c_double, st)
    call check(tarn_search_tree_nearest(h, [100.0_c_double, 0.0_c_double, 0.0_c_double]) /= n + 1, &
        'SearchTree3D: new point before the rebuild')
    call SearchTree3D_CreateTree_F(h)
    call check(tarn_search_tree_nearest(h, [100.0_c_double, 0.0_c_double, 0.0_c_double]) == n + 1, &
        'SearchTree3D: new point after the rebuild')
    call SearchTree3D_Release_F(h, st)
    call check(st == TARN_STATUS_OK .and. .not. c_associated(h), 'SearchTree3D_Release_F nulls')

    call SearchTree3D_Init_F(h)
    call SearchTree3D_CreateTree_F(h)
    number = 7
    call SearchTree3D_FindNearestPoint_F(h, q(1), q(2), q(3), number, st)
    call check(st == TARN_ERR_NOT_FOUND .and. number == 0, 'SearchTree3D: tree of no points')
    call SearchTree3D_Release_F(h)
    call SearchTree3D_AddPoint_F(h, q(1), q(2), q(3), st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'SearchTree3D_AddPoint_F: null handle')
    call SearchTree3D_CreateTree_F(h, st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'SearchTree3D_CreateTree_F: null handle')
    number = 7
    call SearchTree3D_FindNearestPoint_F(h, q(1), q(2), q(3), number, st)
    call check(st == TARN_ERR_INVALID_ARGUMENT .and. number == 0, 'SearchTree3D: query, null handle')
    call SearchTree3D_Release_F(h, st)
    call check_status(st, TARN_STATUS_OK, 'SearchTree3D_Release_F: null handle')
  end subroutine test_search_tree

  ! Bad input gives a status, never a crash.
  subroutine test_bad_input()
    type(c_ptr) :: h, col
    integer(c_int32_t) :: st, u
    integer(c_int32_t) :: ints(2) = [1, 2]
    character(len=10) :: text
    character(len=*), parameter :: latin1 = 'bad' // char(233) // '.csv'

    call CsvLineWriter_AppendValueInt_F(c_null_ptr, 1_c_int32_t, st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'null handle')
    call CsvLineWriter_Clear_F(c_null_ptr, st)
    call check_status(st, TARN_STATUS_OK, 'CsvLineWriter_Clear_F of a null handle')
    call CsvLineWriter_Init_F(h, -1_c_int32_t, st)
    call check(st == TARN_ERR_INVALID_ARGUMENT .and. .not. c_associated(h), 'negative capacity')
    call CsvLineWriter_Init_F(h, 30_c_int32_t, st)
    call CsvLineWriter_AppendValueDble_F(h, ieee_nan(), st)
    call check_status(st, TARN_ERR_INTERNAL, 'NaN refused by the line writer')
    call CsvLineWriter_AppendValueString_F(h, 'x', -1_c_int32_t, st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'negative string length')
    call CsvLineWriter_Release_F(h, st)

    call CsvFileWriter_Init_F(h, 'x.csv', -3_c_int32_t, 0_c_int32_t, st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'negative name length')
    call CsvFileWriter_Init_F(h, 'x.csv', 5_c_int32_t, 7_c_int32_t, st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'unknown open mode')
    call CsvFileWriter_Init_F(h, latin1, len(latin1), 0_c_int32_t, st)
    call check(st == TARN_ERR_INVALID_ARGUMENT .and. .not. c_associated(h), 'name not UTF-8')
    call TarnFileUtil_GetFullPathName_F(latin1, len(latin1), text, len(text), st)
    call check(st == TARN_ERR_INVALID_ARGUMENT .and. text == '', 'full path of a name not UTF-8')
    call TarnFileUtil_GetFullPathName_F(' ', 1, text, len(text), st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'full path of an empty name')
    call tarn_csv_file_writer_init(h, 'no such dir/x.csv', status=st)
    call check(st == TARN_ERR_FILE_IO .and. c_associated(h), 'file that cannot be opened')
    call CsvFileWriter_FlushCsvLine_F(h, st)
    call check_status(st, TARN_ERR_FILE_IO, 'flush without an open file')
    call CsvFileWriter_Release_F(h, st)
    call CsvFileWriter_Init_F(h, '', 0_c_int32_t, 0_c_int32_t, st)
    call check(st == TARN_ERR_FILE_IO .and. c_associated(h), 'empty name')
    call CsvFileWriter_Release_F(h, st)
    call CsvFileWriter_Init_F(h, 'blank.csv      ', 15, 0_c_int32_t, st)
    call CsvFileWriter_Release_F(h, st)
    call check(tarn_file_exists('blank.csv'), 'blank-padded name trimmed')
    call tarn_file_delete('blank.csv')

    call tarn_csv_table_loader_init(h, 'missing.csv', st)
    call check(st == TARN_ERR_FILE_IO .and. .not. c_associated(h), 'loading a missing file')
    call check(ZEL_CsvTableLoader_NumRows_F(h) == 0 .and. ZEL_CsvTableLoader_NumColumns_F(h) == 0, &
        'loader counts of a null handle')
    open (newunit=u, file='bad.csv', status='replace')
    write (u, '(a)') 'a, b', '1, x', '2, 3, 4'
    close (u)
    call tarn_csv_table_loader_init(h, 'bad.csv', st)
    call check(st == TARN_ERR_USER .and. .not. c_associated(h), 'malformed csv-file')
    open (newunit=u, file='bad.csv', status='replace')
    write (u, '(a)') 'a, b', '1, x'
    close (u)
    call tarn_csv_table_loader_init(h, 'bad.csv', st)
    call ZEL_CsvTableLoader_GetIntColData_F(h, 2_c_int32_t, col, st)
    call check(st == TARN_ERR_USER .and. .not. c_associated(col), 'not an integer')
    call ZEL_CsvTableLoader_GetRealColData_F(h, 3_c_int32_t, col, st)
    call check_status(st, TARN_ERR_OUT_OF_RANGE, 'column beyond the table')
    call ZEL_CsvTableLoader_GetColTitle_F(h, 0_c_int32_t, text, len(text), st)
    call check_status(st, TARN_ERR_OUT_OF_RANGE, 'column 0')
    call ZEL_CsvTableLoader_Release_F(h, st)
    call tarn_file_delete('bad.csv')

    call tarn_csv_table_writer_init(h, 't.csv', 0_c_int32_t, st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'table writer with 0 columns per file')
    call BinFileWriter_WriteIntArray_F(c_null_ptr, ints, 2_c_int32_t, st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'binary write to a null handle')
    call tarn_bin_file_writer_init(h, 'b.bin', st)
    call BinFileWriter_WriteIntArray_F(h, ints, -1_c_int32_t, st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'negative count')
    call BinFileWriter_Release_F(h, st)
    call tarn_file_delete('b.bin')
    call FormatUtil_PrintIntList_F(ints, -1_c_int32_t, text, len(text), st)
    call check_status(st, TARN_ERR_INVALID_ARGUMENT, 'negative list count')
  end subroutine test_bad_input

  function ieee_nan() result(x)
    use, intrinsic :: ieee_arithmetic, only: ieee_value, ieee_quiet_nan
    real(c_double) :: x
    x = ieee_value(x, ieee_quiet_nan)
  end function ieee_nan

  ! ---- Child processes -------------------------------------------------------

  ! One case that ends the process (or logs), run as a child by the parent.
  subroutine run_child_case(name)
    character(*), intent(in) :: name
    ! Kept in static memory: the leak checker of a sanitizer build then sees
    ! the arrays still referenced when the process ends.
    type(c_ptr), save :: h
    integer(c_int32_t) :: st
    select case (name)
    case ('push-null')
      call IntArray_PushBack_F(c_null_ptr, 1_c_int32_t)
    case ('resize-negative')
      call IntArray_Init_F(h)
      call IntArray_Resize_F(h, -1_c_int32_t)
    case ('reserve-negative')
      call DoubleArray_Init_F(h)
      call DoubleArray_Reserve_F(h, -5_c_int32_t)
    case ('log-nan')
      call CsvLineWriter_Init_F(h, 100_c_int32_t, st)
      call CsvLineWriter_AppendValueDble_F(h, ieee_nan(), st)
      write (*, '(a, i0)') 'status ', st
      call CsvLineWriter_Release_F(h, st)
    case ('wrapper-stop')
      call tarn_file_delete('missing file.txt')
    case default
      write (*, '(2a)') 'unknown case ', name
      error stop 2
    end select
    write (*, '(a)') 'returned'
  end subroutine run_child_case

  ! Runs this program with the case's name; returns the exit code and
  ! whether every expected text appears in the output (each at the start of
  ! a line when it begins with '^').
  subroutine check_child(name, expected_code, texts)
    character(*), intent(in) :: name
    integer, intent(in) :: expected_code
    character(*), intent(in) :: texts(:)
    character(len=1024) :: self, line
    character(len=:), allocatable :: output
    logical :: found(size(texts))
    integer :: code, u, ios, i
    call get_command_argument(0, self)
    output = 'child_' // name // '.out'
    call execute_command_line(trim(self) // ' ' // name // ' > "' // output // '" 2>&1', &
        exitstat=code)
    call check(code == expected_code, 'child ' // name // ': exit code')
    found = .false.
    open (newunit=u, file=output, status='old', action='read')
    do
      read (u, '(a)', iostat=ios) line
      if (ios /= 0) exit
      do i = 1, size(texts)
        if (texts(i)(1:1) == '^') then
          found(i) = found(i) .or. index(line, trim(texts(i)(2:))) == 1
        else
          found(i) = found(i) .or. index(line, trim(texts(i))) > 0
        end if
      end do
    end do
    close (u, status='delete')
    do i = 1, size(texts)
      call check(found(i), 'child ' // name // ' prints: ' // trim(texts(i)))
    end do
  end subroutine check_child

  subroutine test_child_processes()
    character(len=120) :: texts(4)
    texts(1) = '|ZEL_IntArray_F] Failure in method IntArray_PushBack_F '
    texts(2) = '^The handle is null.'
    texts(3) = 'File ZEL_IntArray_F, line'
    texts(4) = "Failure in function IntArray_PushBack_F: 'errcode != STATUS_OK' " // &
        'Failed to append a value to an IntArray'
    call check_child('push-null', 1, texts)
    texts(1) = 'Failure in method IntArray_Resize_F '
    texts(2) = '^The count must not be negative, but is -1.'
    texts(3) = 'Failure in function IntArray_Resize_F:'
    texts(4) = 'Failed to resize an IntArray'
    call check_child('resize-negative', 1, texts)
    texts(1) = '|ZEL_DoubleArray_F] Failure in method DoubleArray_Reserve_F '
    texts(2) = '^The count must not be negative, but is -5.'
    texts(3) = 'File ZEL_DoubleArray_F, line'
    texts(4) = 'Failed to reserve memory for a DoubleArray'
    call check_child('reserve-negative', 1, texts)
    texts(1) = '(ERROR   ) ['
    texts(2) = '|ZEL_CsvLineWriter_F] Failure in method CsvLineWriter_AppendValueDble_F '
    texts(3) = '^Attempted to print a NaN-value in free format.'
    texts(4) = '^status -1'
    call check_child('log-nan', 0, texts)
    call check_child('wrapper-stop', 1, &
        [character(len=120) :: 'TarnFileUtil_Delete_F failed with status -3'])
  end subroutine test_child_processes

end program tarn_fortran_test
