// Tables for people.
#ifndef DORVDLCTL_RENDERING_TABLE_H_
#define DORVDLCTL_RENDERING_TABLE_H_

#include <ostream>
#include <string>
#include <vector>

namespace dorvdl::ctl {

enum class Alignment { kLeft, kRight };

struct Column {
  std::string title;
  Alignment alignment = Alignment::kLeft;
  bool shrinks = false;  // gives way, for one column, when the table is too wide
};

// Lines of cells in columns as wide as they need to be. Cells may hold any text.
class Table {
 public:
  explicit Table(std::vector<Column> columns);

  // A line with one cell per column.
  void Add(const std::vector<std::string>& cells);

  // Prints the titles and the lines, in @p width columns of a terminal where that can be; 0 for as
  // many as it takes.
  void Print(std::ostream& out, int width) const;

 private:
  std::vector<int> ColumnWidths(int width) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> lines_;  // the titles first; all printable
};

// The width of the terminal that the standard output is; 0 when it is none.
int TerminalWidth();

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RENDERING_TABLE_H_
