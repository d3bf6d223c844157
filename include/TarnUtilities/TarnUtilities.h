//===- TarnUtilities/TarnUtilities.h - Everything at once ------*- C++ -*-===//
//
// The umbrella header: includes every public header of the library.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TARNUTILITIES_H
#define TARNUTILITIES_TARNUTILITIES_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/logging/ZEL_ApplicationTerminator.h"
#include "TarnUtilities/logging/ZEL_Assert.h"
#include "TarnUtilities/logging/ZEL_Backtrace.h"
#include "TarnUtilities/logging/ZEL_Code.h"
#include "TarnUtilities/logging/ZEL_Exception.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/logging/ZelStatusCode.h"
#include "TarnUtilities/system/TarnSysUtil.h"
#include "TarnUtilities/text/ZEL_ConfigFile.h"
#include "TarnUtilities/text/ZEL_ConfigFileItem.h"
#include "TarnUtilities/math/TarnBigInteger.h"
#include "TarnUtilities/text/FloatingPointFormatter.h"
#include "TarnUtilities/text/TarnFloatUtil.h"
#include "TarnUtilities/text/ZEL_FixedBufferComposer.h"
#include "TarnUtilities/text/TarnStringFunctions.h"
#include "TarnUtilities/text/TarnStringTokenizer.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "TarnUtilities/text/TarnUtfUtil.h"
#include "TarnUtilities/system/TarnApplicationUtil.h"
#include "TarnUtilities/system/TarnFileNameUtil.h"
#include "TarnUtilities/system/TarnFileUtil.h"
#include "TarnUtilities/system/TextLinesParser.h"
#include "TarnUtilities/text/TarnFormatUtil.h"

#endif // TARNUTILITIES_TARNUTILITIES_H
