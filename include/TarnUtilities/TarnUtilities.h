//===- TarnUtilities/TarnUtilities.h - Everything at once ------*- C++ -*-===//
//
// The umbrella header: includes every public header of the library.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TARNUTILITIES_H
#define TARNUTILITIES_TARNUTILITIES_H

#include "TarnUtilities/Export.h"

#include "TarnUtilities/container/IntegerCodedBoolVector.h"
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/container/ZEL_IntArray.h"

#include "TarnUtilities/geometry/TarnCoordinateSystem.h"
#include "TarnUtilities/geometry/ZEL_TransformationMatrix.h"
#include "TarnUtilities/geometry/ZEL_SearchTree3D.h"

#include "TarnUtilities/logging/ZEL_ApplicationTerminator.h"
#include "TarnUtilities/logging/ZEL_Assert.h"
#include "TarnUtilities/logging/ZEL_Backtrace.h"
#include "TarnUtilities/logging/ZEL_Code.h"
#include "TarnUtilities/logging/ZEL_Exception.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogConfig.h"
#include "TarnUtilities/logging/ZEL_LogListener.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Logging.h"
#include "TarnUtilities/logging/ZEL_Loglevels.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/logging/ZEL_XmlString.h"
#include "TarnUtilities/logging/ZelStatusCode.h"

#include "TarnUtilities/math/TarnAlgorithmUtil.h"
#include "TarnUtilities/math/TarnBigInteger.h"
#include "TarnUtilities/math/TarnMathUtil.h"
#include "TarnUtilities/math/TarnMatrix.h"
#include "TarnUtilities/math/TarnUtilFullMatrix.h"
#include "TarnUtilities/math/TarnUtilSparseMatrix.h"
#include "TarnUtilities/math/TarnVectorUtil.h"
#include "TarnUtilities/math/ZEL_Algebra.h"
#include "TarnUtilities/math/ZEL_PrecArith.h"

#include "TarnUtilities/numerics/KMeansPlusPlus1D.h"

#include "TarnUtilities/system/TarnApplicationUtil.h"
#include "TarnUtilities/system/TarnBinFileWriter.h"
#include "TarnUtilities/system/TarnFileNameUtil.h"
#include "TarnUtilities/system/TarnFileUtil.h"
#include "TarnUtilities/system/TarnSysUtil.h"
#include "TarnUtilities/system/TextLinesParser.h"

#include "TarnUtilities/text/CsvLineWriter.h"
#include "TarnUtilities/text/FloatingPointFormatter.h"
#include "TarnUtilities/text/TarnCsvFileWriter.h"
#include "TarnUtilities/text/TarnFloatUtil.h"
#include "TarnUtilities/text/TarnFormatUtil.h"
#include "TarnUtilities/text/TarnPackedCStrPool.h"
#include "TarnUtilities/text/TarnParCommand.h"
#include "TarnUtilities/text/TarnParFile.h"
#include "TarnUtilities/text/TarnParFileLine.h"
#include "TarnUtilities/text/TarnParFileParser.h"
#include "TarnUtilities/text/TarnParSubCommand.h"
#include "TarnUtilities/text/TarnStringFunctions.h"
#include "TarnUtilities/text/TarnStringTokenizer.h"
#include "TarnUtilities/text/TarnStringsPool.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "TarnUtilities/text/TarnUtfUtil.h"
#include "TarnUtilities/text/Tarn_SP_STRING_ID.h"
#include "TarnUtilities/text/ZEL_ConfigFile.h"
#include "TarnUtilities/text/ZEL_ConfigFileItem.h"
#include "TarnUtilities/text/ZEL_CsvFileFailure.h"
#include "TarnUtilities/text/ZEL_CsvTableLoader.h"
#include "TarnUtilities/text/ZEL_CsvTableWriter.h"
#include "TarnUtilities/text/ZEL_FixedBufferComposer.h"

#endif // TARNUTILITIES_TARNUTILITIES_H
