// SPDX-License-Identifier: GPL-2.0-or-later
// velmora_bare_window MOMENT WHAT CHILDREN: the floor of a start. A window of Qt's own in a program that
// links nothing but Qt; prints, once it stands painted on the screen, what velmora_start_probe does.
//
// clang-format off
//   start   seconds from MOMENT (nanoseconds of the steady clock), the start of the process
//   later   from the window's construction, while another window is open
// clang-format on
#include "ExposeWatch.h"

#include <memory>
#include <string_view>

namespace {
constexpr int kAcross = 12;

std::unique_ptr<QWidget> windowWith(int children) {
    auto window = std::make_unique<QWidget>();
    window->setObjectName("bare");
    window->resize(1000, 600);
    for (int i = 0; i < children; ++i) {
        QWidget* child = i % 4 == 0 ? static_cast<QWidget*>(new QLabel("label", window.get()))
                                    : new QPushButton("button", window.get());
        child->setGeometry(4 + i % kAcross * 80, 4 + i / kAcross * 28, 76, 24);
    }
    window->show();
    return window;
}
} // namespace

int main(int argc, char* argv[]) {
    using namespace velmora;
    const double started = argc > 1 ? std::atof(argv[1]) * 1e-9 : 0;
    const bool later = argc > 2 && std::string_view(argv[2]) == "later";
    const int children = argc > 3 ? std::atoi(argv[3]) : 0;
    const QApplication application(argc, argv);
    QWidget first;
    if (later) {
        first.show();
        QApplication::processEvents();
    }
    const ExposeWatch watch("bare", later ? steadySeconds() : started);
    const auto window = windowWith(children);
    return QApplication::exec();
}
