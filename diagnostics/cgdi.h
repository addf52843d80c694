#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/tables.h"
#include "diagnostics/cell_text.h"
#include "platform/canvas.h"

class Log;
class OperatorNotice;
class System;

/// Draws the rows of the weigh screen: 13 cells a channel, each composed off-screen over what the window shows under
/// it and copied in one operation, and only if its flag in `ChanDirty` is set. Without `GdiEnabled` nothing is made
/// or drawn.
class CGDI {
 public:
  CGDI(Tables& tables, Canvas& canvas, Log& log, OperatorNotice& notice, System& system);

  /// Creates font, pens, brushes and the cells of channels 0 to `MaxChannel`, once the window shows its picture.
  void SetUp();
  /// Makes one cell; one that is there already is left as it is. `ch` 0 to 33, `item` 0 to 14; raises 9 outside.
  void InitItem(int ch, int item, int x, int y, int height, int width);
  /// Repaints one flagged cell and clears its flag. A cell that was not made yet is passed over.
  void DrawItem(int ch, int item);
  /// Frees one cell. What cannot be freed is logged and passed over.
  void ReleaseItem(int ch, int item);
  /// Frees all cells, then pens, brushes and font.
  void Release();

 private:
  static constexpr int kColours = 6;

  struct Cell {
    bool initialised = false;
    int x = 0, y = 0, width = 0, height = 0;
    DrawingHandle hDC = 0, hDisplayDC = 0;
    DrawingHandle hFrameDC = 0, hFrame = 0, hFramePrev = 0;
    DrawingHandle hBackgroundDC = 0, hBackground = 0, hBackgroundPrev = 0;
    DrawingHandle hOrigBackgroundDC = 0, hOrigBackground = 0, hOrigBackgroundPrev = 0;
    RepaintRate repaints;
  };
  struct SelectedBitmap;
  struct OwnContext;

  void CopyAll(const Cell& cell, DrawingHandle to, DrawingHandle from);
  void DrawLamp(Cell& cell, int ch, int item);
  void DrawText(Cell& cell, int ch, int item);
  std::string_view ShownText(Cell& cell, int ch, int item);
  void FlagCoveredNeighbour(const Cell& cell, int ch, int item);
  void ReportFailure(const std::string& text);
  void DeletePaint(DrawingHandle& handle, std::string_view name, int index);

  Tables& tables_;
  Canvas& canvas_;
  Log& log_;
  OperatorNotice& notice_;
  System& system_;
  Table<Table<Cell, 34>, 15> cells_;
  std::array<DrawingHandle, kColours> hpen_{}, hbr_{};
  DrawingHandle hArial_ = 0;
};
