#pragma once

#include <string>

/// Commands that read a drawing's annotation records. They answer with the exit status and change
/// nothing; a drawing that cannot be read gives kNotRead (3) and one line on stderr.
namespace cli {

struct RecordsOptions {
  std::string drawing;
  bool json = false;
  std::string owner;  ///< handle of the one annotated entity wanted; empty: all
  std::string type;   ///< the one annotation type wanted; empty: all
};
/// Lists the records: 0; 1 when the drawing has no entity `owner`; 2 when `owner` is no handle or
/// `type` no annotation type.
int records_command(const RecordsOptions& options);

/// Lists what is wrong with the records, a line each: 0 when nothing is, else 1.
int check_command(const std::string& drawing);

}  // namespace cli
