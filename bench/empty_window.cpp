// The least that the toolkit can show: what the panel's start is measured against.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.setWindowTitle(QStringLiteral("Empty"));
  window.resize(651, 454);
  window.show();
  return QApplication::exec();
}
