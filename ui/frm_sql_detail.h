#pragma once

#include <QDialog>

/// The detail of a channel that runs the packet protocol: the statement and both directions of the line. No button
/// opens it, since `cmdDetail` refuses such channels.
class frmSQLDetail : public QDialog {
 public:
  frmSQLDetail();
};
