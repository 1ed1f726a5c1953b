// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QFileDialog;

// Makes the toolkit's own file dialogs fit for a panel: large enough to show more than five files,
// with the columns of the detailed list as wide as what is in them (the names get what is left),
// and with file names offered while one types in rows that a finger can hit.
//
// settle() is for a dialog that is being polished. The columns follow whenever it is shown, because
// it puts its former ones back on the way. A dialog without the toolkit's parts is only enlarged.
// GUI thread; as long as the dialogs.
class FileDialogs : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void settle(QFileDialog &dialog);

    bool eventFilter(QObject *dialog, QEvent *event) override;
};
