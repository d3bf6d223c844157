//===- ZEL_Logging.cpp - The logger over ACE --------------------------------===//
//
// Configuration of ACE's destinations and priority mask, and the reporting of
// caught failures as framed text and as an XML file.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/logging/ZEL_Logging.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_XmlString.h"
#include "TarnUtilities/system/TarnFileNameUtil.h"
#include "TarnUtilities/system/TarnFileUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "logging/LogDestinations.h"
#include "logging/LogLine.h"

#include <ace/Log_Msg.h>

#include <iostream>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|ZEL_Logging] ";
const char* const kBanner = "**** Mendrel Corvane ERROR ****\n";
// The code under which an exception of unknown type is reported.
const char* const kUnknownFailureCode = "183807301111";

std::unique_ptr<ZEL_Logging> g_instance;

std::string Indent(std::size_t level) { return std::string(4 * level, ' '); }

// Splits text at "\n"; "a\nb" gives {"a", "b"}, "" gives {""}.
std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = text.find('\n', start);
    lines.push_back(text.substr(start, end - start));
    if (end == std::string::npos)
      return lines;
    start = end + 1;
  }
}

std::string Utf8(const std::u16string& text) { return TarnStringUtil::wide_to_utf8(text.c_str()); }

// The log file: a bare name lies in the working directory, a name with a
// directory part is used as it is.
std::u16string PathInDirectory(const std::u16string& directory, const std::u16string& file) {
  std::u16string dirPart, namePart;
  TarnFileNameUtil::split_path(file, dirPart, namePart);
  if (!dirPart.empty())
    return file;
  std::u16string path;
  TarnFileNameUtil::concat_path(directory, file, path);
  return path;
}

// The failure XML file: a relative name, with or without a directory part,
// lies under the working directory; an absolute one stays as given.
//   ("/w", "f.xml") => "/w/f.xml",  ("/w", "d/f.xml") => "/w/d/f.xml",
//   ("/w", "/x/f.xml") => "/x/f.xml"
std::u16string XmlFilePath(const std::u16string& directory, const std::u16string& file) {
  if (file[0] == u'/')
    return file;
  std::u16string path;
  TarnFileNameUtil::concat_path(directory, file, path);
  return path;
}

// Opens the failure XML file and writes the element that `write` produces.
template <typename WriteElement>
void WriteXmlFile(const std::u16string& directory, const std::u16string& file,
                  WriteElement write) {
  std::ofstream out(Utf8(XmlFilePath(directory, file)), std::ios::out | std::ios::trunc);
  if (!out)
    return; // an XML file that cannot be opened is not reported
  write(out);
  out.flush();
}

} // namespace

ZEL_Logging::ZEL_Logging(const std::string& programName)
    : programName_(TarnStringUtil::utf8_to_wide(programName.c_str())),
      programNameUtf8_(programName) {}

ZEL_Logging::~ZEL_Logging() = default;

ZEL_Logging& ZEL_Logging::Instance() {
  if (!g_instance)
    Init("", ZEL_LogConfig(), u".");
  return *g_instance;
}

void ZEL_Logging::Init(const std::string& programName, const ZEL_LogConfig& config,
                       const std::u16string& workingDirectory) {
  if (g_instance)
    return;
  g_instance.reset(new ZEL_Logging(programName));
  SetConfig(config, workingDirectory);
}

void ZEL_Logging::SetConfig(const ZEL_LogConfig& config, const std::u16string& workingDirectory) {
  ZEL_Logging& self = Instance();
  self.config_ = config;
  self.workingDirectory_ = workingDirectory;

  ACE_Log_Msg* ace = ACE_Log_Msg::instance();
  ace->open(self.programNameUtf8_.c_str(), ACE_Log_Msg::STDERR, nullptr);
  // ACE's open only ever clears the STDERR flag; after an earlier
  // configuration cleared it, it has to be set again here.
  ace->set_flags(ACE_Log_Msg::STDERR);

  std::unique_ptr<std::ofstream> previous = std::move(self.logStream_);
  if (!config.logFile.empty()) {
    const std::u16string path = PathInDirectory(workingDirectory, config.logFile);
    if (config.removeExistingLogFile && TarnFileUtil::FileExists(path))
      TarnFileUtil::RemoveFile(path);
    // A file that cannot be opened leaves a stream in the failed state: the
    // lines are dropped, as nothing else can be done with them.
    self.logStream_ = std::make_unique<std::ofstream>(Utf8(path), std::ios::out | std::ios::app);
    if (!config.echoToStderr)
      ace->clr_flags(ACE_Log_Msg::STDERR);
  } else {
    ace->clr_flags(ACE_Log_Msg::STDERR);
  }
  self.PublishDestinations();
  ace->set_flags(ACE_Log_Msg::OSTREAM);
  if (self.listener_)
    ace->set_flags(ACE_Log_Msg::MSG_CALLBACK);
  ace->priority_mask(ZEL_Loglevels::PriorityMask(config.level), ACE_Log_Msg::PROCESS);
  // Every thread now uses the new stream; the old one can go.
  previous.reset();
}

void ZEL_Logging::PublishDestinations() {
  std::ostream* stream = logStream_ ? static_cast<std::ostream*>(logStream_.get()) : &std::cout;
  ZEL_detail::PublishLogDestinations(stream, listener_.get());
}

void ZEL_Logging::SetListener(ZEL_LogListener::Function function) {
  ZEL_Logging& self = Instance();
  std::unique_ptr<ZEL_LogListener> previous = std::move(self.listener_);
  self.listener_ = std::make_unique<ZEL_LogListener>(function);
  self.PublishDestinations();
  ACE_Log_Msg::instance()->set_flags(ACE_Log_Msg::MSG_CALLBACK);
}

void ZEL_Logging::RemoveListener() {
  ZEL_Logging& self = Instance();
  ACE_Log_Msg::instance()->clr_flags(ACE_Log_Msg::MSG_CALLBACK);
  std::unique_ptr<ZEL_LogListener> previous = std::move(self.listener_);
  self.PublishDestinations();
}

void ZEL_Logging::Release() {
  if (!g_instance)
    return;
  ACE_Log_Msg::instance()->clr_flags(ACE_Log_Msg::MSG_CALLBACK);
  // No thread may keep writing into the stream that is destroyed below.
  ZEL_detail::PublishLogDestinations(&std::cout, nullptr);
  g_instance.reset();
}

ZEL_LogConfig ZEL_Logging::GetConfig() {
  return g_instance ? g_instance->config_ : ZEL_LogConfig();
}

std::string ZEL_Logging::SupportSentence() const {
  std::string text = "\nError has application internal reasons.\n"
                     "Please contact the support of Mendrel and supply ";
  if (!config_.logFile.empty())
    text += "the log-file " + Utf8(config_.logFile) + "\n";
  else
    text += "the complete application output\n";
  return text;
}

void ZEL_Logging::Failure(const ZEL_Exception& e) {
  ZEL_Logging& self = Instance();
  if (!self.config_.exceptionXmlFile.empty()) {
    WriteXmlFile(self.workingDirectory_, self.config_.exceptionXmlFile,
                 [&e](std::ofstream& out) { WriteExceptionAsXml(out, e, 0); });
    if (!self.config_.logXmlExceptionsAsText)
      return;
  }
  LogException(e, 0);
}

void ZEL_Logging::Failure(const std::exception& e) {
  ZEL_Logging& self = Instance();
  const std::string what = e.what() ? e.what() : "";
  if (!self.config_.exceptionXmlFile.empty()) {
    WriteXmlFile(self.workingDirectory_, self.config_.exceptionXmlFile, [&what](std::ofstream& out) {
      out << "<EXCEPTION name=\"std::exception\">\n";
      for (const std::string& line : SplitLines(what))
        out << "  <MESSAGE>" << ZEL_XmlString(line) << "</MESSAGE>\n";
      out << "</EXCEPTION>\n";
    });
    if (!self.config_.logXmlExceptionsAsText)
      return;
  }
  const std::string text = kBanner + what + self.SupportSentence();
  // Written directly at critical priority; this prefix has no blank after
  // the parenthesis, unlike the critical() level function.
  ZEL_detail::WriteLogLine(LM_CRITICAL, "(CRITICAL)", __FILE__, __LINE__, kHeader, text.c_str());
}

void ZEL_Logging::Failure() {
  Failure(ZEL_Failure(ZEL_Code(kUnknownFailureCode), "Unknown error", ""));
}

void ZEL_Logging::LogException(const ZEL_Exception& e, std::size_t /*level*/) {
  const ZEL_Logging& self = Instance();
  const std::string header = e.GetHeader().empty() ? std::string(kHeader) : e.GetHeader();
  std::string text = kBanner;
  WriteExceptionToString(text, e, 0);
  if (e.GetCode().exists()) {
    text += self.SupportSentence();
    ZEL_LogMacros::critical(__FILE__, __LINE__, header.c_str(), text.c_str());
  } else {
    ZEL_LogMacros::error(__FILE__, __LINE__, header.c_str(), text.c_str());
  }
}

void ZEL_Logging::WriteExceptionToString(std::string& out, const ZEL_Exception& e,
                                         std::size_t level) {
  // Iterative over the chain of reasons, so that no chain depth can exhaust
  // the stack.
  for (const ZEL_Exception* current = &e; current; current = current->GetReason(), ++level) {
    const std::string indent = Indent(level);
    out += indent + current->GetMessage() + "\n";
    if (current->GetCode().exists())
      out += indent + "Code: " + current->GetCode().GetCode() + "\n";
    if (!current->GetBacktrace().empty()) {
      out += indent + "Backtrace:\n";
      for (const std::string& frame : current->GetBacktrace())
        out += indent + "  " + frame + "\n";
    }
    if (current->GetReason())
      out += indent + "Reason:\n";
  }
}

void ZEL_Logging::WriteExceptionAsXml(std::ofstream& out, const ZEL_Exception& e,
                                      std::size_t level) {
  std::vector<const ZEL_Exception*> chain;
  for (const ZEL_Exception* current = &e; current; current = current->GetReason())
    chain.push_back(current);
  for (std::size_t i = 0; i < chain.size(); ++i) {
    const ZEL_Exception& x = *chain[i];
    const std::string indent = Indent(level + i);
    out << indent << "<EXCEPTION name=\"" << ZEL_XmlString(x.GetName()) << "\">\n";
    for (const std::string& line : SplitLines(x.GetMessage()))
      out << indent << "  <MESSAGE>" << ZEL_XmlString(line) << "</MESSAGE>\n";
    if (x.GetCode().exists())
      out << indent << "  <CODE>" << ZEL_XmlString(x.GetCode().GetCode()) << "</CODE>\n";
    for (const std::string& frame : x.GetBacktrace())
      out << indent << "  <BACKTRACE>" << ZEL_XmlString(frame) << "</BACKTRACE>\n";
    if (i + 1 < chain.size())
      out << indent << "  <REASON>\n";
  }
  for (std::size_t i = chain.size(); i-- > 0;) {
    const std::string indent = Indent(level + i);
    if (i + 1 < chain.size())
      out << indent << "  </REASON>\n";
    out << indent << "</EXCEPTION>\n";
  }
}
