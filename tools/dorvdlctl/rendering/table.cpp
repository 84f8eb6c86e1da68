#include "rendering/table.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

constexpr char kGap[] = "  ";
constexpr int kGapWidth = 2;
constexpr int kLeastShrunkWidth = 12;

}  // namespace

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)) {
  std::vector<std::string> titles;
  for (const Column& column : columns_) {
    titles.push_back(column.title);
  }
  Add(titles);
}

void Table::Add(const std::vector<std::string>& cells) {
  std::vector<std::string>& line = lines_.emplace_back();
  std::transform(cells.begin(), cells.end(), std::back_inserter(line), &Printable);
}

std::vector<int> Table::ColumnWidths(int width) const {
  std::vector<int> widths(columns_.size());
  for (const auto& line : lines_) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      widths[i] = std::max(widths[i], Width(line[i]));
    }
  }
  const int gaps = kGapWidth * static_cast<int>(columns_.size() - 1);
  const int excess = std::accumulate(widths.begin(), widths.end(), gaps) - width;
  for (std::size_t i = 0; width > 0 && excess > 0 && i < columns_.size(); ++i) {
    if (columns_[i].shrinks) {
      widths[i] = std::min(widths[i], std::max(widths[i] - excess, kLeastShrunkWidth));
    }
  }
  return widths;
}

void Table::Print(std::ostream& out, int width) const {
  const std::vector<int> widths = ColumnWidths(width);
  for (const auto& line : lines_) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i) {
      const std::string cell = FitInto(line[i], widths[i]);
      const std::string padding(static_cast<std::size_t>(widths[i] - Width(cell)), ' ');
      text += i == 0 ? "" : kGap;
      text += columns_[i].alignment == Alignment::kRight ? padding + cell : cell + padding;
    }
    text.erase(text.find_last_not_of(' ') + 1);
    out << text << '\n';
  }
}

int TerminalWidth() {
  winsize size{};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

}  // namespace dorvdl::ctl
