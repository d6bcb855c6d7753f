#pragma once

#include <string>
#include <vector>

/// Commands that read what a drawing holds. They answer with the exit status and change
/// nothing; a drawing that cannot be read gives kNotRead (3), a module that cannot be loaded
/// kWrongUsage (2), and one line on stderr.
namespace cli {

struct RecordsOptions {
  std::string drawing;
  bool json = false;
  std::string owner;                 ///< handle of the one annotated entity wanted; empty: all
  std::string type;                  ///< the one annotation type wanted; empty: all
  std::vector<std::string> modules;  ///< to load, for the types they register
};
/// Lists the records: 0; 1 when the drawing has no entity `owner`; 2 when `owner` is no handle or
/// `type` no annotation type.
int records_command(const RecordsOptions& options);

struct CheckOptions {
  std::string drawing;
  std::vector<std::string> modules;  ///< to load, for the types they register
};
/// Lists what is wrong with the records, a line each: 0 when nothing is, else 1.
int check_command(const CheckOptions& options);

struct NetworkOptions {
  std::string drawing;
  bool json = false;
};
/// Counts pipes and nodes and lists what is wrong with them: 0 when nothing is, else 1.
int network_command(const NetworkOptions& options);

}  // namespace cli
