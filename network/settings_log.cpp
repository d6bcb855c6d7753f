#include "network/settings_log.h"

#include <algorithm>

namespace network {
namespace {

SettingsLog* log_kept = nullptr;

}  // namespace

void SettingsLog::add(FileNote note) {
  const auto same = std::find_if(files.begin(), files.end(),
                                 [&](const FileNote& file) { return file.path == note.path; });
  if (same == files.end())
    files.push_back(std::move(note));
  else
    *same = std::move(note);
}

SettingsLog* settings_log() { return log_kept; }

SettingsLogScope::SettingsLogScope(SettingsLog& log) : outer_(log_kept) { log_kept = &log; }

SettingsLogScope::~SettingsLogScope() { log_kept = outer_; }

}  // namespace network
