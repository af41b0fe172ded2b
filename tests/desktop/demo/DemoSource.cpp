// An ordinary window for the demo: vistrel_demo_source KIND X Y WIDTH HEIGHT, where KIND is "tide"
// (always moving), "log" (a line now and then) or "notes" (at rest).

#include <QApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>
#include <QWidget>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>

namespace {

using Paint = std::function<void(QPainter&, QSize, int tick)>;

struct Kind {
  const char* application;
  const char* title;
  int tickMilliseconds;
  Paint paint;
};

// One wave: a sine that wanders to the left, filled down to the bottom.
QPainterPath wave(QSize size, double level, double height, double length, double phase) {
  QPainterPath path(QPointF(0, size.height()));
  constexpr int step = 4;
  for (int x = 0; x < size.width() + step; x += step) {
    path.lineTo(x, level * size.height() + height * std::sin(x / length + phase));
  }
  path.lineTo(size.width() + step, size.height());
  path.closeSubpath();
  return path;
}

void paintTide(QPainter& painter, QSize size, int tick) {
  QLinearGradient sky(0, 0, 0, size.height());
  sky.setColorAt(0, QColor(0x1f, 0x2a, 0x5a));
  sky.setColorAt(0.6, QColor(0xf2, 0x8c, 0x5e));
  painter.fillRect(QRect(QPoint(), size), sky);
  const double time = tick / 30.0;
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0xff, 0xe0, 0xa0));
  const double sunX = size.width() * (0.5 + 0.38 * std::sin(time * 0.7));
  painter.drawEllipse(QPointF(sunX, size.height() * 0.36), 46, 46);
  const struct {
    double level, height, length, speed;
    QColor colour;
  } waves[] = {{0.56, 14, 80, 1.1, QColor(0x2f, 0x6f, 0xa8)},
               {0.66, 18, 105, 1.7, QColor(0x22, 0x55, 0x8a)},
               {0.78, 22, 140, 2.4, QColor(0x14, 0x38, 0x66)}};
  for (const auto& each : waves) {
    painter.setBrush(each.colour);
    painter.drawPath(wave(size, each.level, each.height, each.length, each.speed * time));
  }
}

void paintLog(QPainter& painter, QSize size, int tick) {
  static constexpr const char* steps[] = {"compile", "link", "test", "package", "upload"};
  painter.fillRect(QRect(QPoint(), size), QColor(0x16, 0x1b, 0x22));
  painter.setFont(QFont("DejaVu Sans Mono", 11));
  const int lineHeight = painter.fontMetrics().height() + 3;
  const int lines = size.height() / lineHeight;
  for (int line = 0; line < lines; ++line) {
    const int number = tick + line;
    const bool slow = number % 7 == 3;
    painter.setPen(slow ? QColor(0xe3, 0xb3, 0x41) : QColor(0x7e, 0xe7, 0x87));
    painter.drawText(12, (line + 1) * lineHeight, slow ? "wait" : " ok ");
    painter.setPen(QColor(0xc9, 0xd1, 0xd9));
    painter.drawText(66, (line + 1) * lineHeight,
                     QString("%1  %2  module-%3")
                         .arg(1000 + number)
                         .arg(QString(steps[number % 5]), -8)
                         .arg(number * 37 % 91, 2, 10, QChar('0')));
  }
}

void paintNotes(QPainter& painter, QSize size, int) {
  painter.fillRect(QRect(QPoint(), size), QColor(0xfb, 0xf8, 0xf1));
  painter.setPen(QColor(0x2b, 0x2b, 0x2b));
  painter.setFont(QFont("DejaVu Sans", 15, QFont::Bold));
  painter.drawText(24, 44, "Harbour tour");
  painter.setFont(QFont("DejaVu Sans", 11));
  const char* lines[] = {"High water at a quarter past six.", "Meet at the lighthouse steps.",
                         "Bring: rope, lamp, a warm coat.", "Call the pilot before sunset."};
  int y = 80;
  for (const char* line : lines) {
    painter.drawText(24, y, QString::fromUtf8("•  ") + line);
    y += 28;
  }
}

class Window : public QWidget {
 public:
  explicit Window(const Kind& kind) : kind_(kind) {
    setWindowTitle(QString::fromUtf8(kind.title));
    if (kind.tickMilliseconds > 0) {
      connect(&timer_, &QTimer::timeout, this, [this] {
        ++tick_;
        update();
      });
      timer_.start(kind.tickMilliseconds);
    }
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    kind_.paint(painter, size(), tick_);
  }

 private:
  const Kind& kind_;
  QTimer timer_;
  int tick_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const std::map<std::string, Kind> kinds{
      {"tide", {"Tide", "Bay at dusk", 33, paintTide}},
      {"log", {"Builder", "Nightly build", 1500, paintLog}},
      {"notes", {"Notes", "Harbour tour", 0, paintNotes}},
  };
  const auto kind = argc == 6 ? kinds.find(argv[1]) : kinds.end();
  if (kind == kinds.end()) {
    return EXIT_FAILURE;
  }
  // The window's class, which is what people know a program by, comes from these two names.
  QCoreApplication::setApplicationName(kind->second.application);
  std::string name = kind->second.application;
  char* arguments[] = {name.data(), nullptr};
  int count = 1;
  QApplication application(count, arguments);
  Window window(kind->second);
  window.setGeometry(std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]),
                     std::atoi(argv[5]));
  window.show();
  return QApplication::exec();
}
