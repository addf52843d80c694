#pragma once

class QDialog;

/// Look of the setup screen: that of the other dialogs, with fields small enough for all of them to be seen at once.
void ApplySetupStyle(QDialog& dialog);
