! A Fortran program that uses the installed module tarn_utilities.
program fortran_consumer
  use tarn_utilities
  implicit none
  type(c_ptr) :: a
  integer(c_int32_t) :: i
  character(len=20) :: text
  call IntArray_Init_F(a)
  do i = 1, 5
    call IntArray_PushBack_F(a, i)
  end do
  call tarn_print_int_list(tarn_int_array_values(a), text)
  call IntArray_Release_F(a)
  if (text /= '1-5') error stop 1
  print '(a)', 'fortran consumer OK'
end program fortran_consumer
