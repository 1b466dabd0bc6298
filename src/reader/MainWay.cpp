#include "reader/Main.h"

#include "base/InterfaceLanguage.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "stores/settings/Registry.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostRecent = 50;
constexpr int storeDelay = 5000; // milliseconds; places come with each move, and the file is written as a whole
constexpr int longestWait = 500; // milliseconds at the end for a page that does not answer

const QString placesValue = u"Texts"_s;

bool IsWalkingKey(const QKeyEvent &event)
{
    if (event.modifiers() & (Qt::AltModifier | Qt::ControlModifier))
        return false;
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return true;
    default:
        return false;
    }
}

} // namespace

/// Sees keys and presses before their widgets do: a text that comes by an arrow key is only passed, and the mouse's
/// buttons for back and forward serve all over the window.
class InputWatch : public QObject
{
public:
    explicit InputWatch(QWidget &window) : QObject(&window), m_window(window) { qApp->installEventFilter(this); }

    bool IsWalking() const { return m_isWalking; }
    std::function<void(bool isForward)> OnWayButton;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            m_isWalking = IsWalkingKey(*static_cast<QKeyEvent *>(event));
            break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            m_isWalking = false;
            return TakeWayButton(watched, static_cast<QMouseEvent *>(event)->button());
        default:
            break;
        }
        return false;
    }

private:
    bool TakeWayButton(QObject *watched, Qt::MouseButton button)
    {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if ((button != Qt::BackButton && button != Qt::ForwardButton) || !widget || widget->window() != &m_window)
            return false;
        // Not from within Chromium's call.
        QTimer::singleShot(0, this, [this, button] { RunGuarded([&] { OnWayButton(button == Qt::ForwardButton); }); });
        return true;
    }

    QWidget &m_window;
    bool m_isWalking = false;
};

void TfrmMain::SetUpWay()
{
    m_input = new InputWatch(*this);
    m_input->OnWayButton = [this](bool isForward) { (isForward ? ui->acForward : ui->acBack)->trigger(); };
    ui->btnBack->SetAction(ui->acBack);
    ui->btnBack->SetDropDownMenu(ui->bsiRecent);
    ui->btnForward->SetAction(ui->acForward);
    ConnectGuarded(ui->ppMore, &QMenu::aboutToShow, this, [this] { FillRecent(); });
    ConnectGuarded(ui->bsiRecent, &QMenu::aboutToShow, this, [this] { FillRecent(); });
    m_storeTimer = new QTimer(this);
    m_storeTimer->setSingleShot(true);
    m_storeTimer->setInterval(storeDelay);
    ConnectGuarded(m_storeTimer, &QTimer::timeout, this, [this] { StorePlaces(); });
    try {
        m_places = PlaceStore(
            frmKeloraDM->GetRegistryData(RegistryRoot::CurrentUser, QString::fromUtf16(PlacesKey), placesValue)
                .toString());
    } catch (const RegistryError &) {
        // Nothing is stored yet.
    }
}

int TfrmMain::TextOnShow()
{
    return qryTreeSutas.Active() ? qryTreeSutas.FieldByName(Field::IdVic).AsInteger() : 0;
}

void TfrmMain::TextComes()
{
    const qint64 now = Doors().clock();
    const int text = TextOnShow();
    ++m_textNumber;
    if (m_travel) {
        m_wanted = m_travel;
        return;
    }
    LeavePlace();
    const bool isReload = m_isReloading && !vIsInit;
    m_wanted = isReload || m_hasOwnPlace || m_hit ? std::nullopt : (m_given ? m_given : m_places.PlaceIn(text));
    const MoveKind kind = isReload ? MoveKind::Reload : (m_input->IsWalking() ? MoveKind::Walk : MoveKind::Jump);
    m_history.Moved({text, ShownLanguage(), m_wanted.value_or(PagePlace())}, kind, now);
}

bool TfrmMain::LeavePlace(const std::function<void()> &then)
{
    const int step = m_history.StepOnShow(Doors().clock());
    // Of a text that was only passed, or of a group, nothing is to be known later; at the end, the text counts.
    if (m_shown.text == 0 || (step == 0 && !then))
        return false;
    return ui->ebContent->AskPlace(
        [self = QPointer(this), step, shown = m_shown, isText = m_isTextShown, then](const PagePlace &page) {
            if (!self)
                return;
            const Place place{shown.text, shown.language, page};
            self->m_history.Keep(step, place);
            if (isText) {
                self->m_places.Keep(place);
                self->m_storeTimer->start();
            }
            if (then)
                then();
        });
}

void TfrmMain::ViewAgain(int mode)
{
    const auto take = [self = QPointer(this), text = m_textNumber](const PagePlace &page) {
        if (!self || self->m_textNumber != text)
            return;
        self->m_wanted = page;
        self->GoToWantedPlace();
    };
    // While the page is still coming, the place that it is to have stays.
    if (ui->ebContent->AskPlace(take))
        m_wanted.reset();
    ViewSutta(mode);
}

void TfrmMain::GoToWantedPlace()
{
    if (m_wanted && ui->ebContent->IsComplete())
        ui->ebContent->GoToPlace(*std::exchange(m_wanted, std::nullopt));
}

void TfrmMain::Go(bool isForward)
{
    // A key must leave the filter box before its release, which would read the tree again.
    if (!ui->barFoot->isAncestorOf(focusWidget()))
        ui->ebContent->setFocus(Qt::ShortcutFocusReason);
    LeavePlace();
    const auto next = [&] { return isForward ? m_history.Forward(Doors().clock()) : m_history.Back(Doors().clock()); };
    // A text may be gone since, with a canon that was replaced.
    while (const std::optional<Place> place = next()) {
        if (TravelTo(*place))
            break;
    }
    m_history.Shows(TextOnShow());
}

bool TfrmMain::TravelTo(const Place &place)
{
    const int language = ShownLanguage();
    const int text = TextOnShow();
    ChooseLanguage(place.text, place.language);
    if (text != place.text) {
        m_travel = place.page;
        bool isFound = false;
        const bool isDone = RunGuarded([&] { isFound = OpenInWholeTree(place.text); });
        m_travel.reset();
        if (!isDone || !isFound)
            ChooseLanguage(text, language);
        return isDone && isFound;
    }
    ++m_textNumber; // a place that is still asked for is no longer the one to have
    m_wanted = place.page;
    if (language != ShownLanguage())
        ViewSutta(ShownLanguage());
    else
        GoToWantedPlace();
    return true;
}

void TfrmMain::ChooseLanguage(int text, int mode)
{
    LeaveHit();
    if (mode == PageMode::English) {
        m_hit = Hit{text, mode};
        ShowLanguageButton(mode);
        return;
    }
    if (mode == frmKeloraDM->vLanguageSutta)
        return;
    frmKeloraDM->vLanguageSutta = mode;
    ShowLanguageButton(mode);
    EnableMargins(mode != PageMode::Parallel);
    StoreSilently(Option::LanguageSutta, mode);
}

QString TfrmMain::NameOfText(int text)
{
    for (const KeloraText &known : Texts()) {
        // As the tree has the names after a change of the interface's language.
        if (known.number == text)
            return InterfaceLang == 0 ? known.vietnamese : known.pali;
    }
    return {};
}

void TfrmMain::FillRecent()
{
    QList<int> texts = m_places.Texts();
    if (m_isTextShown) {
        texts.removeAll(m_shown.text);
        texts.prepend(m_shown.text);
    }
    ui->bsiRecent->clear();
    for (const int text : std::as_const(texts)) {
        const QString name = NameOfText(text);
        if (name.isEmpty() || ui->bsiRecent->actions().size() == mostRecent)
            continue;
        const QString shown = u"%1  ·  %2"_s.arg(name).arg(text);
        QAction *action = ui->bsiRecent->addAction(QString(shown).replace(u'&', u"&&"_s));
        ConnectGuarded(action, &QAction::triggered, this, [this, text] { OpenInWholeTree(text); });
    }
    ui->bsiRecent->menuAction()->setEnabled(!ui->bsiRecent->isEmpty());
}

void TfrmMain::StorePlaces()
{
    m_storeTimer->stop();
    try {
        frmKeloraDM->SetRegistryData(RegistryRoot::CurrentUser, QString::fromUtf16(PlacesKey), m_places.Stored(),
                                     RegistryType::String, placesValue);
    } catch (const RegistryError &) {
        // The places hold for this run all the same.
    }
}

void TfrmMain::StorePlacesAtEnd()
{
    QEventLoop answer;
    const auto end = [loop = QPointer(&answer)] {
        if (loop)
            loop->quit();
    };
    if (LeavePlace(end)) {
        QTimer::singleShot(longestWait, &answer, &QEventLoop::quit);
        answer.exec(QEventLoop::ExcludeUserInputEvents);
    }
    StorePlaces();
}
