#include <QApplication>
#include <QMainWindow>

namespace
{
/// Ends the program once it has been drawn, as the desk does with --first-frame.
class Window : public QMainWindow
{
    void paintEvent(QPaintEvent* event) override
    {
        QMainWindow::paintEvent(event);
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    }
};
} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    Window window;
    window.resize(1280, 800);
    window.show();
    return QCoreApplication::exec();
}
