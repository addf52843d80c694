#pragma once

class QString;
class QWidget;

/// A style sheet that is written for factor 1, with all its lengths magnified.
QString MagnifiedSheet(const QString& sheet);

/// Has `window`, which is laid out with all it holds at factor 1, follow the magnification: fonts, sizes, margins and
/// style sheets. To be called once, when everything is in its place. What a widget paints by itself it must magnify.
void FollowMagnification(QWidget& window);
