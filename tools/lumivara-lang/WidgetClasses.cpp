#include "lumivara-lang/WidgetClasses.h"

#include <QHash>

QByteArray BaseClass(const QByteArray &className)
{
    // The tool links no widgets, so it cannot ask them.
    static const QHash<QByteArray, QByteArray> bases = [] {
        struct Family
        {
            const char *base;
            const char *classes;
        };
        const Family families[] = {
            {"QObject", "QWidget QLayout QAction QActionGroup QButtonGroup"},
            {"QLayout", "QBoxLayout QGridLayout QFormLayout QStackedLayout"},
            {"QBoxLayout", "QHBoxLayout QVBoxLayout"},
            {"QWidget", "QFrame QAbstractButton QAbstractSlider QAbstractSpinBox QComboBox QDialog QDialogButtonBox "
                        "QDockWidget QGroupBox QLineEdit QMainWindow QMenu QMenuBar QProgressBar QStatusBar QTabBar "
                        "QTabWidget QToolBar QWebEngineView QKeySequenceEdit"},
            {"QFrame", "QAbstractScrollArea QLabel QSplitter QStackedWidget"},
            {"QAbstractButton", "QCheckBox QPushButton QRadioButton QToolButton"},
            {"QAbstractSlider", "QScrollBar QSlider"},
            {"QAbstractSpinBox", "QDateTimeEdit QDoubleSpinBox QSpinBox"},
            {"QComboBox", "QFontComboBox"},
            {"QAbstractScrollArea", "QAbstractItemView QPlainTextEdit QScrollArea QTextEdit"},
            {"QTextEdit", "QTextBrowser"},
            {"QAbstractItemView", "QHeaderView QListView QTableView QTreeView"},
            {"QListView", "QListWidget"},
            {"QTableView", "QTableWidget"},
            {"QTreeView", "QTreeWidget"},
        };
        QHash<QByteArray, QByteArray> table;
        for (const Family &family : families) {
            for (const QByteArray &name : QByteArray(family.classes).split(' '))
                table.insert(name, family.base);
        }
        return table;
    }();
    return bases.value(className);
}
