#pragma once

#include "module/platform/foundation.h"

/// A failure inside the module: a code and the place in the sources. Never leaves an operation.
class CKTException : public CException {
 public:
  CKTException(int code, const wchar_t* file, int line) : code_(code), file_(file), line_(line) {}
  int code() const { return code_; }
  const wchar_t* file() const { return file_; }
  int line() const { return line_; }

 private:
  int code_;
  const wchar_t* file_;
  int line_;
};
