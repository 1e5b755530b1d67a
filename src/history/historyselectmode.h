#pragma once

/// Mode of the recent captures. In select mode every row shows a check box, and the commands for many
/// images work on the checked rows.
using HistorySelectMode = int;

namespace HistorySelectModes {
constexpr HistorySelectMode Normal = 0;
constexpr HistorySelectMode Select = 1;
} // namespace HistorySelectModes
