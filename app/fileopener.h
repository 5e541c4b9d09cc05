// SPDX-License-Identifier: MIT
// Files that the user opens from outside the program, one after the other: a question for each profile and macro, and a
// report in the status line for everything else. Owned by the program; main thread only.
#pragma once

#include "app/openedfile.h"
#include "base/statusreport.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <utility>

class KeyboardMainController;
class Sheet;

/// Adds nothing without the user's consent. A file waits until there is a keyboard, and until no sheet, menu, name,
/// pause or recording is open that the question would interrupt.
class FileOpener : public QObject
{
    Q_OBJECT

public:
    /// So many files can wait.
    static constexpr int maximumWaiting = 20;

    /// `hub` and `window` must outlive this.
    FileOpener(KeyboardMainController &hub, QWidget &window);

    /// `arguments` are paths or addresses of files.
    void open(const QStringList &arguments);

private:
    void askNext();
    /// Says, once for each reason, that the next file waits.
    void reportWait(StatusReport::Event event);
    [[nodiscard]] bool isWindowFree() const;
    /// Reads the file at `path` and asks, or reports why not.
    void consider(const QString &path);
    [[nodiscard]] bool isRoomFor(const OpenedFile &file) const;
    void ask(const OpenedFile &file);
    void end(int returnCode);
    void add(const OpenedFile &file);
    void controlsStateChanged();

    KeyboardMainController &mHub;
    QWidget &mWindow;
    QStringList mWaiting;                                  ///< paths
    std::pair<QString, StatusReport::Event> mReportedWait; ///< of the file at this path
    QTimer mRetry;          ///< runs while a file waits for the window; a sheet or name can end in many ways
    OpenedFile mAsked;      ///< the file of the question that is up
    QPointer<Sheet> mSheet; ///< the question
};
