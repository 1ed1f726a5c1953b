// SPDX-License-Identifier: MIT
#include "style/filedialogs.h"

#include "style/metrics.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QEvent>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QScreen>
#include <QStyledItemDelegate>
#include <QTreeView>

using namespace Metrics;

namespace
{

// The toolkit's own size shows five files; there is room for more on every panel. As a minimum,
// because the dialog takes its size only after it was polished.
void enlarge(QFileDialog &dialog)
{
    const QSize room = dialog.screen()->availableSize() - QSize(2 * margin, touchSize);
    const QSize wanted(fileDialogWidth, fileDialogHeight);
    dialog.setMinimumSize(dialog.minimumSize().expandedTo(wanted.boundedTo(room)));
}

// The toolkit guesses the widths from English words, and keeps them from one run to the next.
// A sideways scroll bar, which it would leave there empty, would cost a row.
void fitColumns(QTreeView &files)
{
    files.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QHeaderView &header = *files.header();
    header.setStretchLastSection(false);
    for (int section = 0; section < header.count(); ++section) {
        header.setSectionResizeMode(section, section == 0 ? QHeaderView::Stretch
                                                          : QHeaderView::ResizeToContents);
    }
}

// The completer's own delegate does not ask the style how high a row is.
void offerLargeRows(const QFileDialog &dialog)
{
    const auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    if (name != nullptr && name->completer() != nullptr) {
        QAbstractItemView *offered = name->completer()->popup();
        offered->setItemDelegate(new QStyledItemDelegate(offered));
    }
}

} // namespace

void FileDialogs::settle(QFileDialog &dialog)
{
    enlarge(dialog);
    offerLargeRows(dialog);
    dialog.installEventFilter(this);
}

bool FileDialogs::eventFilter(QObject *dialog, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        if (auto *files = dialog->findChild<QTreeView *>(QStringLiteral("treeView"))) {
            fitColumns(*files);
        }
    }
    return QObject::eventFilter(dialog, event);
}
