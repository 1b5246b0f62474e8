#include <KestrioKit/Kestrio.h>

#include <QCoreApplication>
#include <QTimer>

using namespace Qt::StringLiterals;

// The part of a host that `RudeLoader.cpp` loads at run time. 0 when there is a visitor in time.
extern "C" Q_DECL_EXPORT int runPlugin() {
    Kestrio::shared().configure(u"env"_s);
    Kestrio::shared().track(u"Asked"_s, [](SurveyState) { QCoreApplication::exit(0); });
    QTimer::singleShot(10000, qApp, [] { QCoreApplication::exit(1); });
    return QCoreApplication::exec();
}
