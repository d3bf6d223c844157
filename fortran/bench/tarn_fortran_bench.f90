!===- fortran/bench/tarn_fortran_bench.f90 - The binding's cost from Fortran -===!
!
! Times, with system_clock over repetitions, what the Fortran binding costs
! against its peers, and prints the median times and their ratios:
!
!   push    10^7 IntArray_PushBack_F calls (array created and released in the
!           timing) against a Fortran allocatable array grown by doubling
!           with move_alloc.                                  target <= 1.5
!   csv     a 200,000 x 10 table of random doubles written from Fortran
!           (CsvFileWriter_AppendReal_F, CsvFileWriter_FlushCsvLine_F)
!           against the same table written from C++ through
!           TarnCsvFileWriter in the same run.                target <= 1.2
!
! Each run is timed by the wall clock (system_clock) and by the process's
! CPU time (cpu_time); on a loaded machine the CPU-time ratio is the
! steadier one.
!
! Usage: tarn_fortran_bench [repetitions]   (default 7; run in a scratch dir)
!
!===------------------------------------------------------------------------===!
program tarn_fortran_bench
  use, intrinsic :: iso_c_binding
  use tarn_utilities
  implicit none

  interface
    function tarn_bench_csv_cpp(name, length, rows, columns, values) result(rc) &
        bind(c, name='tarn_bench_csv_cpp')
      import :: c_char, c_int32_t, c_double
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int32_t), value :: length, rows, columns
      real(c_double), intent(in) :: values(*)
      integer(c_int32_t) :: rc
    end function
  end interface

  integer(c_int32_t), parameter :: PUSHES = 10000000
  integer(c_int32_t), parameter :: ROWS = 200000, COLUMNS = 10
  integer :: repetitions, rep
  character(len=16) :: arg
  ! Times per repetition: (1, :) wall clock, (2, :) CPU time.
  real(c_double), allocatable :: t_push(:, :), t_doubling(:, :), t_csv_f(:, :), t_csv_cpp(:, :)
  real(c_double), allocatable :: table(:)
  integer(c_int64_t) :: checksum

  repetitions = 7
  if (command_argument_count() > 0) then
    call get_command_argument(1, arg)
    read (arg, *) repetitions
  end if
  allocate (t_push(2, repetitions), t_doubling(2, repetitions), t_csv_f(2, repetitions), &
      t_csv_cpp(2, repetitions))
  allocate (table(ROWS * COLUMNS))
  call random_number(table)
  table = (table - 0.5d0) * 1d6

  checksum = 0
  do rep = 1, repetitions
    t_push(:, rep) = time_push()
    t_doubling(:, rep) = time_doubling()
    t_csv_f(:, rep) = time_csv_fortran()
    t_csv_cpp(:, rep) = time_csv_cpp()
  end do
  call tarn_file_delete('bench_f.csv')
  call tarn_file_delete('bench_cpp.csv')

  write (*, '(a, i0, a)') 'Medians of ', repetitions, ' repetitions (wall clock, CPU time):'
  call report('IntArray_PushBack_F x 1e7      ', t_push)
  call report('Fortran allocatable, doubling  ', t_doubling)
  call report('CSV 200000 x 10 from Fortran   ', t_csv_f)
  call report('CSV 200000 x 10 from C++       ', t_csv_cpp)
  write (*, '(a, 2f7.3, a)') 'Ratio push / doubling:   ', median(t_push(1, :)) / &
      median(t_doubling(1, :)), median(t_push(2, :)) / median(t_doubling(2, :)), '  (target <= 1.5)'
  write (*, '(a, 2f7.3, a)') 'Ratio CSV Fortran / C++: ', median(t_csv_f(1, :)) / &
      median(t_csv_cpp(1, :)), median(t_csv_f(2, :)) / median(t_csv_cpp(2, :)), '  (target <= 1.2)'
  write (*, '(a, i0, a)') '(checksum ', checksum, ')'

contains

  ! The wall clock and the CPU time, in seconds.
  function now() result(t)
    real(c_double) :: t(2)
    integer(c_int64_t) :: count, rate
    call system_clock(count, rate)
    t(1) = real(count, c_double) / real(rate, c_double)
    call cpu_time(t(2))
  end function now

  subroutine report(what, times)
    character(*), intent(in) :: what
    real(c_double), intent(in) :: times(:, :)
    write (*, '(2x, a, f10.2, a, f10.2, a)') what, 1d3 * median(times(1, :)), ' ms', &
        1d3 * median(times(2, :)), ' ms'
  end subroutine report

  function time_push() result(elapsed)
    real(c_double) :: elapsed(2)
    type(c_ptr) :: h
    integer(c_int32_t) :: i
    integer(c_int32_t), pointer :: v(:)
    real(c_double) :: start(2)
    start = now()
    call IntArray_Init_F(h)
    do i = 1, PUSHES
      call IntArray_PushBack_F(h, i)
    end do
    v => tarn_int_array_values(h)
    checksum = checksum + v(size(v))
    call IntArray_Release_F(h)
    elapsed = now() - start
  end function time_push

  function time_doubling() result(elapsed)
    real(c_double) :: elapsed(2)
    integer(c_int32_t), allocatable :: a(:), grown(:)
    integer(c_int32_t) :: i, n
    real(c_double) :: start(2)
    start = now()
    allocate (a(10))
    n = 0
    do i = 1, PUSHES
      if (n == size(a)) then
        allocate (grown(2 * size(a)))
        grown(1:n) = a(1:n)
        call move_alloc(grown, a)
      end if
      n = n + 1
      a(n) = i
    end do
    checksum = checksum + a(n)
    deallocate (a)
    elapsed = now() - start
  end function time_doubling

  function time_csv_fortran() result(elapsed)
    real(c_double) :: elapsed(2)
    type(c_ptr) :: csv
    integer(c_int32_t) :: row, column, st
    real(c_double) :: start(2)
    start = now()
    call tarn_csv_file_writer_init(csv, 'bench_f.csv')
    do row = 0, ROWS - 1
      do column = 1, COLUMNS
        call CsvFileWriter_AppendReal_F(csv, table(row * COLUMNS + column), st)
      end do
      call CsvFileWriter_FlushCsvLine_F(csv, st)
    end do
    call CsvFileWriter_Release_F(csv, st)
    elapsed = now() - start
  end function time_csv_fortran

  function time_csv_cpp() result(elapsed)
    real(c_double) :: elapsed(2)
    real(c_double) :: start(2)
    start = now()
    if (tarn_bench_csv_cpp('bench_cpp.csv', 13, ROWS, COLUMNS, table) /= 0) &
        error stop 'the C++ side could not write its file'
    elapsed = now() - start
  end function time_csv_cpp

  real(c_double) function median(times)
    real(c_double), intent(in) :: times(:)
    real(c_double) :: sorted(size(times)), swap
    integer :: i, j
    sorted = times
    do i = 2, size(sorted)
      do j = i, 2, -1
        if (sorted(j) >= sorted(j - 1)) exit
        swap = sorted(j); sorted(j) = sorted(j - 1); sorted(j - 1) = swap
      end do
    end do
    median = sorted((size(sorted) + 1) / 2)
  end function median

end program tarn_fortran_bench
