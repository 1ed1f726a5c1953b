// SPDX-License-Identifier: MIT
#include "app/errorbrowser.h"

#include "style/metrics.h"
#include "style/richtext.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QTextDocument>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

// The toolkit's own test ends with the first line, and the tags may stand in a later one.
bool hasTags(const QString &text)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    return std::any_of(lines.begin(), lines.end(),
                       [](const QString &line) { return Qt::mightBeRichText(line); });
}

// As plain text. Breaking one line of a device's 64 KiB without a blank takes seconds.
QString withoutLongLines(const QString &text)
{
    constexpr int longest = 4096;
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString &line : lines) {
        if (line.size() > longest) {
            line = line.left(longest) + QChar(0x2026); // an ellipsis
        }
    }
    return lines.join(QLatin1Char('\n'));
}

// A text may come from a device: what it names is neither read nor fetched. A picture must not be
// null, or the toolkit goes and reads the file itself.
class ClosedBrowser : public QTextBrowser
{
public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl &) override
    {
        return type == QTextDocument::ImageResource
                   ? QVariant(QImage(1, 1, QImage::Format_ARGB32_Premultiplied))
                   : QVariant(QByteArray());
    }
};

void fill(QTextBrowser &browser, QString text)
{
    if (!hasTags(text) || !RichText::isSimple(text)) {
        browser.setPlainText(withoutLongLines(text));
        return;
    }
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    browser.setHtml(text);
}

} // namespace

ErrorBrowser::ErrorBrowser(const QString &title, const QString &text, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(title);
    auto *column = new QVBoxLayout(this);

    auto *browser = new ClosedBrowser(this);
    browser->setObjectName(QStringLiteral("textBrowser"));
    browser->setAccessibleName(tr("Error text"));
    browser->setReadOnly(true);
    browser->setOpenLinks(false);
    fill(*browser, text);
    column->addWidget(browser);

    auto *row = new QHBoxLayout;
    auto *ok = new QPushButton(tr("OK"), this);
    ok->setObjectName(QStringLiteral("buttonOk"));
    ok->setMinimumSize(2 * Metrics::touchSize, Metrics::touchSize);
    ok->setDefault(true);
    row->addStretch();
    row->addWidget(ok);
    row->addStretch();
    column->addLayout(row);

    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    ok->setFocus();
    resize(Metrics::errorDialogWidth, Metrics::errorDialogHeight);
}

void ErrorBrowser::error(const QString &title, const QString &text, QWidget *parent)
{
    ErrorBrowser dialog(title, text, parent);
    dialog.exec();
}

void ErrorBrowser::error(const QString &title, const QStringList &lines, QWidget *parent)
{
    error(title, lines.join(QLatin1Char('\n')), parent);
}

void ErrorBrowser::jobError(QString result, QWidget *parent)
{
    const QString prefix = QStringLiteral("Error=");
    if (result.startsWith(prefix)) {
        result.remove(0, prefix.size());
    }
    if (!result.isEmpty()) {
        error(tr("Error"), result, parent);
    }
}
