#include "diagnostics/cgdi.h"

#include "core/log.h"
#include "diagnostics/screen_layout.h"
#include "platform/operator_notice.h"
#include "platform/system.h"

namespace {

constexpr std::string_view kApplicationTitle = "Tarvex";

/// Colours of pens and brushes, by index.
constexpr Colour kPaint[] = {{255, 32, 32}, {0, 255, 0}, {255, 255, 0}, {0, 255, 128}, {0, 164, 255}, {255, 0, 255}};

/// Index into `kPaint` by item.
constexpr int kLampPaint[] = {1, 1, 2, 4, 4, 1, 5, 0};

constexpr Colour kBlack = {0, 0, 0};
constexpr Colour kBlue = {0, 0, 128};
constexpr Colour kRed = {128, 0, 0};

struct TextStyle {
  Colour colour;
  TextAlign align;
};

/// Texts from `Item::Description` on.
constexpr TextStyle kTexts[] = {
    {kBlue, TextAlign::Left},   {kBlack, TextAlign::Right}, {kBlack, TextAlign::Right},
    {kBlack, TextAlign::Right}, {kRed, TextAlign::Left},
};

constexpr int kFontWeight = 500;
constexpr int kReleaseOrder[] = {1, 0, 2, 4, 5, 3};

const TextStyle& StyleOf(int item) { return kTexts[item - Item::Description]; }

/// "(3,8: 4711)": the indices of a cell and the value of a handle as failures show them.
std::string Shown(int ch, int item, DrawingHandle handle) {
  return "(" + std::to_string(ch) + "," + std::to_string(item) + ": " + std::to_string(handle) + ")";
}

}  // namespace

struct CGDI::SelectedBitmap {
  DrawingHandle Cell::*context;
  DrawingHandle Cell::*previous;
  DrawingHandle Cell::*bitmap;
  std::string_view contextName, previousName, bitmapName;
};

struct CGDI::OwnContext {
  DrawingHandle Cell::*context;
  std::string_view name;
};

CGDI::CGDI(Tables& tables, Canvas& canvas, Log& log, OperatorNotice& notice, System& system)
    : tables_(tables), canvas_(canvas), log_(log), notice_(notice), system_(system) {}

void CGDI::SetUp() {
  if (tables_.GdiEnabled == False) return;
  const ScreenLayout& layout = LayoutFor(tables_.ScreenWidth);
  if (hArial_ == 0) {
    hArial_ = canvas_.CreateFont({"Arial", layout.fontHeight, layout.fontWidth, kFontWeight});
    for (std::size_t index = 0; index < kColours; ++index) {
      hpen_[index] = canvas_.CreatePen(kPaint[index]);
      hbr_[index] = canvas_.CreateBrush(kPaint[index]);
    }
  }
  for (int ch = 0; ch <= tables_.MaxChannel; ++ch) {
    for (int item = 0; item < Item::Count; ++item) {
      const CellPlace place = PlaceOf(layout, ch, item);
      InitItem(ch, item, place.x, place.y, place.height, place.width);
    }
  }
}

void CGDI::InitItem(int ch, int item, int x, int y, int height, int width) {
  Cell& cell = cells_[item][ch];
  if (tables_.GdiEnabled == False || cell.initialised) return;
  cell.x = x;
  cell.y = y;
  cell.width = width;
  cell.height = height;
  const int bitmapWidth = width - 1;
  const int bitmapHeight = height - 1;
  cell.hDC = canvas_.WindowContext();
  cell.hFrameDC = canvas_.CreateCompatibleContext();
  cell.hFrame = canvas_.CreateBitmap(bitmapWidth, bitmapHeight);
  cell.hFramePrev = canvas_.SelectObject(cell.hFrameDC, cell.hFrame);
  canvas_.Copy(cell.hFrameDC, 0, 0, bitmapWidth, bitmapHeight, cell.hDC, x, y);
  canvas_.ReleaseContext(cell.hDC);
  canvas_.SetTransparentBackground(cell.hFrameDC);

  cell.hOrigBackgroundDC = canvas_.CreateCompatibleContext();
  cell.hOrigBackground = canvas_.CreateBitmap(bitmapWidth, bitmapHeight);
  cell.hOrigBackgroundPrev = canvas_.SelectObject(cell.hOrigBackgroundDC, cell.hOrigBackground);
  cell.hBackgroundDC = canvas_.CreateCompatibleContext();
  cell.hBackground = canvas_.CreateBitmap(bitmapWidth, bitmapHeight);
  cell.hBackgroundPrev = canvas_.SelectObject(cell.hBackgroundDC, cell.hBackground);
  if (ch < kColours) {
    canvas_.SelectObject(cell.hFrameDC, hbr_[static_cast<std::size_t>(ch)]);
    canvas_.SelectObject(cell.hFrameDC, hpen_[static_cast<std::size_t>(ch)]);
  }
  CopyAll(cell, cell.hOrigBackgroundDC, cell.hFrameDC);
  CopyAll(cell, cell.hBackgroundDC, cell.hFrameDC);
  cell.initialised = true;
}

void CGDI::CopyAll(const Cell& cell, DrawingHandle to, DrawingHandle from) {
  canvas_.Copy(to, 0, 0, cell.width - 1, cell.height - 1, from, 0, 0);
}

void CGDI::DrawItem(int ch, int item) {
  if (tables_.GdiEnabled == False || tables_.ScreenPainted == False) return;
  Cell& cell = cells_[item][ch];
  if (!cell.initialised || tables_.ChanDirty[item][ch] == False) return;
  CopyAll(cell, cell.hFrameDC, cell.hOrigBackgroundDC);
  if (IsLamp(item)) {
    DrawLamp(cell, ch, item);
  } else {
    DrawText(cell, ch, item);
  }
  cell.hDisplayDC = canvas_.WindowContext();
  canvas_.Copy(cell.hDisplayDC, cell.x, cell.y, cell.width - 1, cell.height - 1, cell.hFrameDC, 0, 0);
  canvas_.ReleaseContext(cell.hDisplayDC);
  tables_.ChanDirty[item][ch] = False;
  FlagCoveredNeighbour(cell, ch, item);
}

void CGDI::DrawLamp(Cell& cell, int ch, int item) {
  CopyAll(cell, cell.hFrameDC, cell.hBackgroundDC);
  if (tables_.ChanIndicator[item][ch] == False) return;
  const auto paint = static_cast<std::size_t>(kLampPaint[item]);
  canvas_.SelectObject(cell.hFrameDC, hpen_[paint]);
  canvas_.SelectObject(cell.hFrameDC, hbr_[paint]);
  const ScreenLayout& layout = LayoutFor(tables_.ScreenWidth);
  const int top = item == Item::Error ? 0 : 1;
  canvas_.Ellipse(cell.hFrameDC, 1, top, layout.ellipseWidth, layout.ellipseHeight);
}

void CGDI::DrawText(Cell& cell, int ch, int item) {
  const ScreenLayout& layout = LayoutFor(tables_.ScreenWidth);
  const TextStyle& style = StyleOf(item);
  const std::string_view text = ShownText(cell, ch, item);
  canvas_.SelectObject(cell.hFrameDC, hArial_);
  canvas_.SetText(cell.hFrameDC, style.colour, style.align);
  canvas_.TextOut(cell.hFrameDC, style.align == TextAlign::Right ? layout.rightTextX : 0, layout.textY, text);
}

std::string_view CGDI::ShownText(Cell& cell, int ch, int item) {
  const bool rate = item == Item::StatusCaption && tables_.DebugMode == True;
  return rate ? cell.repaints.Count(system_.WallSeconds()) : TextOfCell(tables_, ch, item);
}

/// Text cells reach over the left edge of the next one, by most of it in the 800 layout: without this a new
/// description would wipe the weight beside it.
void CGDI::FlagCoveredNeighbour(const Cell& cell, int ch, int item) {
  if (IsLamp(item) || item == Item::StatusCaption) return;
  const Cell& next = cells_[item + 1][ch];
  if (next.initialised && cell.x + cell.width - 1 > next.x) tables_.ChanDirty[item + 1][ch] = True;
}

void CGDI::ReleaseItem(int ch, int item) {
  static constexpr SelectedBitmap kBitmaps[] = {
      {&Cell::hFrameDC, &Cell::hFramePrev, &Cell::hFrame, "hFrameDC", "hFramePrev", "hFrame"},
      {&Cell::hOrigBackgroundDC, &Cell::hOrigBackgroundPrev, &Cell::hOrigBackground, "hOrigBackgroundDC",
       "hOrigBackgroundPrev", "hOrigBackground"},
      {&Cell::hBackgroundDC, &Cell::hBackgroundPrev, &Cell::hBackground, "hBackgroundDC", "hBackgroundPrev",
       "hBackground"},
  };
  static constexpr OwnContext kContexts[] = {
      {&Cell::hDC, "hDC"},
      {&Cell::hDisplayDC, "hDisplayDC"},
      {&Cell::hFrameDC, "hFrameDC"},
      {&Cell::hBackgroundDC, "hBackgroundDC"},
      {&Cell::hOrigBackgroundDC, "hOrigBackgroundDC"},
  };

  Cell& cell = cells_[item][ch];
  if (!cell.initialised) return;
  for (const SelectedBitmap& part : kBitmaps) {
    const DrawingHandle context = cell.*part.context;
    if (canvas_.SelectObject(context, cell.*part.previous) == 0) {
      ReportFailure("Error Selecting " + std::string(part.previousName) + Shown(ch, item, cell.*part.previous) +
                    " to " + std::string(part.contextName) + Shown(ch, item, context));
    }
    if (!canvas_.DeleteObject(cell.*part.bitmap)) {
      ReportFailure("Error Deleting " + std::string(part.bitmapName) + Shown(ch, item, cell.*part.bitmap) + " Object");
    }
  }
  for (const OwnContext& part : kContexts) {
    const DrawingHandle context = cell.*part.context;
    const bool neverTaken = context == 0;
    if (neverTaken || canvas_.DeleteContext(context)) continue;
    ReportFailure("Error Deleting " + std::string(part.name) + Shown(ch, item, context));
  }
  cell = {};
}

void CGDI::Release() {
  for (int ch = 0; ch <= tables_.MaxChannel; ++ch) {
    for (int item = 0; item < Item::Count; ++item) ReleaseItem(ch, item);
  }
  for (int index : kReleaseOrder) {
    DeletePaint(hpen_[static_cast<std::size_t>(index)], "hpen", index);
    DeletePaint(hbr_[static_cast<std::size_t>(index)], "hbr", index);
  }
  if (hArial_ != 0 && !canvas_.DeleteObject(hArial_)) ReportFailure("Error Deleting hArial Object");
  hArial_ = 0;
}

void CGDI::DeletePaint(DrawingHandle& handle, std::string_view name, int index) {
  if (handle != 0 && !canvas_.DeleteObject(handle)) {
    ReportFailure("Error Deleting  " + std::string(name) + "(" + std::to_string(index) + ": " + std::to_string(handle) +
                  ")");
  }
  handle = 0;
}

void CGDI::ReportFailure(const std::string& text) {
  try {
    log_.WriteLog(LogType::Drawing, text);
  } catch (const RunTimeError&) {
    // the objects behind this one are freed all the same
  }
  if (tables_.DebugMode == True) notice_.PlainMessageBox(kApplicationTitle, text);
}
