// SPDX-License-Identifier: GPL-2.0-or-later
// velmora_start_probe MOMENT WINDOW [CHILDREN]: shows a window as the program does and prints, once it stands
// painted on the screen: the seconds that took, the memory in KiB, and how many children it has.
//
//   opener       the start window; seconds from MOMENT (nanoseconds of the steady clock), the start of the
//   process form1        the composing window, from the press of "Start Program" plain        a window of
//   Qt's with CHILDREN children, from MOMENT plain-later  the same, from its construction while another
//   window is open
#include "app/Program.h"
#include "base/SteadyClock.h"
#include "sound/MidiBackends.h"

#include <QtWidgets>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string_view>

namespace {

long residentKiB() {
    std::ifstream file("/proc/self/statm");
    long size = 0;
    long resident = 0;
    file >> size >> resident;
    return resident * 4;
}

QWidget* windowNamed(const QString& name) {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->objectName() == name)
            return widget;
    return nullptr;
}

/// Prints and ends the process when the window named @p window has been painted.
class Watch : public QObject {
public:
    Watch(QString window, double since) : window_(std::move(window)), since_(since) {
        qApp->installEventFilter(this);
    }
    void setSince(double since) { since_ = since; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* window = qobject_cast<QWindow*>(watched);
        if (window && event->type() == QEvent::Expose && window->isExposed() && !seen_ &&
            window->objectName().startsWith(window_)) {
            seen_ = true;
            QTimer::singleShot(0, this, [this] { report(); });
        }
        return false;
    }

private:
    void report() const {
        QGuiApplication::sync();
        const double seconds = velmora::steadySeconds() - since_;
        const auto children = windowNamed(window_)->findChildren<QWidget*>().size();
        std::printf("%.6f %ld %lld\n", seconds, residentKiB(), static_cast<long long>(children));
        std::fflush(stdout);
        std::_Exit(0);
    }

    QString window_;
    double since_;
    bool seen_ = false;
};

/// With the composing window and the help open.
[[noreturn]] void reportSkins() {
    auto* opener = dynamic_cast<velmora::openerF*>(windowNamed("openerF"));
    opener->Command2_Click();
    auto* form = dynamic_cast<velmora::form1*>(windowNamed("form1"));
    form->imgTitleHelp_Click();
    const double open = velmora::steadySeconds() + 1;
    while (velmora::steadySeconds() < open)
        QApplication::processEvents();
    double longest = 0;
    for (int skin = 1; skin <= velmora::kSkinCount; ++skin) {
        const double begin = velmora::steadySeconds();
        form->skins().Skintype_Click(skin);
        QApplication::processEvents();
        QGuiApplication::sync();
        longest = std::max(longest, velmora::steadySeconds() - begin);
    }
    std::printf("%.6f %ld %d\n", longest, residentKiB(), velmora::kSkinCount);
    std::fflush(stdout);
    std::_Exit(0);
}

std::unique_ptr<QWidget> plainWindow(int children) {
    auto window = std::make_unique<QWidget>();
    window->setObjectName("plain");
    window->resize(1000, 600);
    for (int i = 0; i < children; ++i) {
        QWidget* child = i % 4 == 0 ? static_cast<QWidget*>(new QLabel("label", window.get()))
                                    : new QPushButton("button", window.get());
        child->setGeometry(4 + i % 12 * 80, 4 + i / 12 * 28, 76, 24);
    }
    window->show();
    return window;
}

} // namespace

int main(int argc, char* argv[]) {
    using namespace velmora;
    const double started = argc > 1 ? std::atof(argv[1]) * 1e-9 : 0;
    const std::string_view what = argc > 2 ? argv[2] : "";
    const int children = argc > 3 ? std::atoi(argv[3]) : 0;
    auto backends = what.starts_with("plain") ? decltype(createMidiBackends())() : createMidiBackends();
    const QApplication application(argc, argv);
    if (what.starts_with("plain")) {
        if (what == "plain") {
            const Watch watch("plain", started);
            const auto window = plainWindow(children);
            return QApplication::exec();
        }
        QWidget first;
        first.show();
        QApplication::processEvents();
        const Watch watch("plain", steadySeconds());
        const auto window = plainWindow(children);
        return QApplication::exec();
    }
    Program program(std::move(backends), {});
    Watch watch(what == "form1" ? "form1" : what == "opener" ? "openerF" : "none", started);
    program.start();
    if (what == "form1")
        QTimer::singleShot(500, [&watch] {
            watch.setSince(steadySeconds());
            dynamic_cast<openerF*>(windowNamed("openerF"))->Command2_Click();
        });
    if (what == "skins")
        QTimer::singleShot(500, reportSkins);
    return QApplication::exec();
}
