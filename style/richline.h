// SPDX-License-Identifier: MIT
#pragma once

#include <QTextDocument>
#include <QWidget>

// One line of rich text that takes the room it is given: centred where it fits, else in a smaller
// font down to the smallest readable one, else cut with a fade at its end and its whole text as a
// tool tip. Colours in the text are lightened until they can be read on the widget's ground.
//
// Asks for its whole width, insists on none. Lets every mouse event through to its parent. Broken
// HTML is shown as the toolkit's reader understands it. GUI thread.
class RichLine : public QWidget
{
    Q_OBJECT

public:
    explicit RichLine(QWidget *parent);

    void setText(const QString &richText);
    QString text() const { return text_; }
    QString plainText() const;
    // Whether the text is cut at the widget's present width.
    bool isCut() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void build();
    void fit();
    void makeReadable();

    QString text_;
    QString shown_; // the text, or a part of it as it stands
    QTextDocument document_;
    int fullWidth_ = 0;
};
