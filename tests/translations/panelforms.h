// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QWidget>

#include <memory>

class BrelWindow;
class Catalogue;
class MainWindow;
class QTemporaryDir;

// All that the operator gets to see, one form at a time: the pages in the program's frame over the
// whole screen, with both of their faces, and the dialogs over it. Made as the program makes it,
// with the catalogues of the system's language, from the folder where they were built.
//
// GUI thread. One at a time in a test program; it changes the current directory and leaves the
// program's look behind.
class PanelForms
{
public:
    PanelForms();
    ~PanelForms();

    // "ru" or "en", whose catalogue gives the texts, or nothing where they are those of the
    // sources.
    static QString language();

    // In the order of the panel: first the faces of pages.
    static QStringList names();

    // Shows it and returns it: for a page the frame. The one before is hidden or gone.
    QWidget *show(const QString &name);
    // The whole page that the frame shows.
    QWidget *page() const;
    BrelWindow *frame() const { return frame_.get(); }

private:
    void awaitPages() const;
    bool awaitFiles() const;
    void showFace(const QString &name);
    void fillPage() const;
    std::unique_ptr<QWidget> makeDialog(const QString &name) const;

    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<Catalogue> toolkitCatalogue_;
    std::unique_ptr<Catalogue> ownCatalogue_;
    std::unique_ptr<BrelWindow> frame_;
    std::unique_ptr<MainWindow> window_;
    std::unique_ptr<QWidget> dialog_;
};
