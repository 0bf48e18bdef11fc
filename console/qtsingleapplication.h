#pragma once

#include <QApplication>
#include <QLocalServer>
#include <QLockFile>
#include <QPointer>

#include <memory>

class QLocalSocket;
class QWidget;

/// An application of which a user runs one instance for each installed executable. The first
/// instance holds a lock and listens on a local socket, both in the user's own runtime directory; a
/// later one sends it a message. Only processes of the same user can talk to it, and what a crashed
/// instance left behind doesn't block the next start.
class QtSingleApplication : public QApplication
{
    Q_OBJECT

public:
    /// Makes the application object and becomes the running instance when there is none.
    QtSingleApplication(int& argc, char** argv);

    /// Whether another instance runs.
    [[nodiscard]] bool isRunning();

    /// Sends a text of at most 64 KiB to the running instance and waits for its answer, for the
    /// given number of milliseconds at most. False when no other instance runs or none answers.
    bool sendMessage(const QString& message, int timeout = 5000);

    /// The window that comes forward; not owned. With the flag it comes forward on every message.
    void setActivationWindow(QWidget* window, bool activateOnMessage = true);

    /// Brings the activation window up: restores, raises and activates it.
    void activateWindow();

Q_SIGNALS:
    /// A message of another instance has arrived and was answered.
    void messageReceived(const QString& message);

private:
    bool becomeRunningInstance();
    void acceptConnections();
    void receive(QLocalSocket* socket);

    QString m_socketPath;
    std::unique_ptr<QLockFile> m_lock;
    QLocalServer m_server;
    QPointer<QWidget> m_window;
};
