// Who is at the desk: logging in as the practice opens, the first
// administrator of a new practice, the lock screen after the desk has stood
// idle, and a patient's history with its audit trail.

#include "desk_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTableWidget>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include <map>

using namespace quorvane;

namespace practice {

std::optional<Login> askForLogin(QWidget* parent, const QString& practice, const QString& why, bool firstAdministrator) {
    QDialog dialog(parent);
    dialog.setWindowTitle(firstAdministrator ? "The Practice's First Administrator" : "Log In — Practice Desk");
    auto* form = new QFormLayout(&dialog);
    auto* said = new QLabel(why.isEmpty() ? (firstAdministrator
                                                 ? "Name the administrator of " + practice +
                                                       ", who adds the other users."
                                                 : "Log in to " + practice + ".")
                                          : why,
                            &dialog);
    said->setWordWrap(true);
    form->addRow(said);
    auto* user = new QLineEdit(&dialog);
    user->setObjectName("loginUser");
    auto* password = new QLineEdit(&dialog);
    password->setObjectName("loginPassword");
    password->setEchoMode(QLineEdit::Password);
    auto* repeat = new QLineEdit(&dialog);
    repeat->setEchoMode(QLineEdit::Password);
    form->addRow("&User:", user);
    form->addRow("&Password:", password);
    if (firstAdministrator) form->addRow("&Repeat it:", repeat);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    form->addRow(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, [&] {
        if (firstAdministrator && password->text() != repeat->text())
            said->setText("The two passwords differ. Type the same one twice.");
        else if (!user->text().trimmed().isEmpty())
            dialog.accept();
    });
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return Login{user->text().trimmed(), password->text()};
}

// A server without a user in its URL, and a file with users, ask who is there;
// a new practice asks for its first administrator. Nobody answering leaves
// the practice closed.
void DeskWindow::openStore(const QString& database, Opening o) {
    const bool server = database.startsWith("postgresql://");
    const QString named = server ? QUrl(database).toString(QUrl::RemovePassword | QUrl::RemoveQuery) : database;
    auto ask = [&](const QString& why, bool first) -> std::optional<Login> {
        return o.ask ? o.ask(why, first) : std::nullopt;
    };
    if (server && o.login.user.isEmpty() && QUrl(database).userName().isEmpty() && o.ask) {
        const std::optional<Login> given = ask({}, false);
        if (!given) throw LoginRefused(("Nobody logged in to " + named + ".").toStdString());
        o.login = *given;
    }
    for (;;) {
        if (server && !o.login.user.isEmpty()) store_.setCredentials(o.login.user, o.login.password);
        try {
            store_.open(database, today_, o.mode);
            break;
        } catch (const LoginRefused& e) {
            const std::optional<Login> again = ask(QString::fromStdString(e.what()), false);
            if (!again) throw;
            o.login = *again;
        }
    }
    if (server) return;
    QString why;
    if (!store_.hasUsers()) {
        // A new practice opened with a user named sets that user up as its
        // administrator; an attended one asks.
        if (o.mode == OpenMode::Demo && !o.login.user.isEmpty()) {
            store_.addUser(o.login.user, o.login.password, Role::Administrator);
            return;
        }
        if (o.mode != OpenMode::Demo || !o.ask) return;
        for (;;) {
            const std::optional<Login> first = ask(why, true);
            if (!first) throw StoreError(("No administrator was named for " + named + ", so it stays closed.").toStdString());
            try {
                store_.addUser(first->user, first->password, Role::Administrator);
                return;
            } catch (const StoreError& e) {
                why = QString::fromStdString(e.what());
            }
        }
    }
    if (!o.login.user.isEmpty()) {
        try {
            store_.logIn(o.login.user, o.login.password);
            return;
        } catch (const LoginRefused& e) {
            why = QString::fromStdString(e.what());
        }
    }
    for (;;) {
        const std::optional<Login> given = ask(why, false);
        if (!given)
            throw LoginRefused(why.isEmpty() ? (named + " has users: log in with --user NAME, the password in "
                                                        "PRACTICE_DESK_PASSWORD.")
                                                   .toStdString()
                                             : why.toStdString());
        try {
            store_.logIn(given->user, given->password);
            return;
        } catch (const LoginRefused& e) {
            why = QString::fromStdString(e.what());
        }
    }
}

// ---- The lock screen -----------------------------------------------------------

void DeskWindow::buildLockScreen() {
    lockScreen_ = new QWidget(this);
    lockScreen_->setObjectName("lockScreen");
    lockScreen_->setAutoFillBackground(true);
    lockScreen_->setStyleSheet("#lockScreen { background: #dfe6ee; }");
    auto* layout = new QVBoxLayout(lockScreen_);
    layout->addStretch();
    auto* title = new QLabel("The desk is locked", lockScreen_);
    title->setStyleSheet("font: bold 20px;");
    title->setAlignment(Qt::AlignCenter);
    layout->addWidget(title);
    lockMessage_ = new QLabel(lockScreen_);
    lockMessage_->setObjectName("lockMessage");
    lockMessage_->setAlignment(Qt::AlignCenter);
    lockMessage_->setWordWrap(true);
    layout->addWidget(lockMessage_);
    auto* form = new QFormLayout;
    lockUser_ = new QLineEdit(lockScreen_);
    lockUser_->setObjectName("lockUser");
    lockPassword_ = new QLineEdit(lockScreen_);
    lockPassword_->setObjectName("lockPassword");
    lockPassword_->setEchoMode(QLineEdit::Password);
    form->addRow("&User:", lockUser_);
    form->addRow("&Password:", lockPassword_);
    auto* unlockButton = new QPushButton("&Unlock", lockScreen_);
    unlockButton->setObjectName("unlock");
    unlockButton->setDefault(true);
    form->addRow(unlockButton);
    auto* centre = new QHBoxLayout;
    centre->addStretch();
    centre->addLayout(form);
    centre->addStretch();
    layout->addLayout(centre);
    layout->addStretch();
    QObject::connect(unlockButton, &QPushButton::clicked, this, [this] { unlock(); });
    QObject::connect(lockPassword_, &QLineEdit::returnPressed, this, [this] { unlock(); });
    lockScreen_->hide();
}

void DeskWindow::setIdleLock(std::chrono::milliseconds idle) {
    if (!idle_) {
        idle_ = new QTimer(this);
        QObject::connect(idle_, &QTimer::timeout, this, [this] { lock(); });
    }
    idle_->setInterval(static_cast<int>(idle.count()));
    qApp->removeEventFilter(this);
    if (idle.count() > 0) {
        qApp->installEventFilter(this);
        idle_->start();
    } else {
        idle_->stop();
    }
}

bool DeskWindow::locked() const { return lockScreen_ && lockScreen_->isVisible(); }

// The practice goes out of sight, the pane and what it holds stay as they are.
void DeskWindow::lock() {
    if (locked() || !s_) return;
    if (idle_) idle_->stop();
    // A dialog left open (a patient search with its list of names) goes too,
    // as if the user had cancelled it.
    while (QWidget* modal = QApplication::activeModalWidget()) {
        if (!modal->close()) break;
    }
    s_->widget->hide();
    if (history_) history_->close();
    if (legend_) legend_->close();
    menuBar()->setEnabled(false);
    statusBar()->clearMessage();
    lockUser_->setText(store_.userName());
    lockPassword_->clear();
    lockMessage_->setText(store_.hasUsers() ? store_.userName() + " was working here. Type the password to go on, "
                                                                   "or log in as someone else."
                                            : "This practice has no users yet, so anyone may unlock it; an "
                                              "administrator adds users with practice-desk --add-user.");
    lockScreen_->setGeometry(centralWidget() ? centralWidget()->geometry() : rect());
    lockScreen_->show();
    lockScreen_->raise();
    lockPassword_->setFocus();
}

void DeskWindow::unlock() {
    const QString user = lockUser_->text().trimmed(), password = lockPassword_->text();
    lockPassword_->clear();
    if (store_.hasUsers()) {
        try {
            store_.logIn(user, password);
        } catch (const StoreError& e) {
            lockMessage_->setText(QString::fromStdString(e.what()));
            return;
        }
    }
    lockScreen_->hide();
    menuBar()->setEnabled(true);
    showRole();
    s_->widget->show();
    s_->widget->setFocus();
    statusBar()->showMessage("Unlocked for " + store_.userName(), 8000);
    if (idle_ && idle_->interval() > 0) idle_->start();
}

// A key or a click anywhere starts the idle time again; while the desk is
// locked, only the lock screen takes them.
bool DeskWindow::filtersInput(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
        break;
    default:
        return false;
    }
    if (!locked()) {
        if (idle_ && idle_->interval() > 0) idle_->start();
        return false;
    }
    auto* widget = qobject_cast<QWidget*>(watched);
    return widget && widget != lockScreen_ && !lockScreen_->isAncestorOf(widget) && widget->window() == this;
}

// ---- The administrator's menu ---------------------------------------------------

void DeskWindow::buildPracticeMenu() {
    practiceMenu_ = menuBar()->addMenu("&Practice");
    practiceMenu_->setObjectName("practiceMenu");
    allowDoubleBookings_ = practiceMenu_->addAction("Allow &Double Bookings");
    allowDoubleBookings_->setObjectName("allowDoubleBookings");
    allowDoubleBookings_->setCheckable(true);
    QObject::connect(allowDoubleBookings_, &QAction::triggered, this, [this](bool allow) {
        guarded([&] {
            try {
                store_.setAllowDoubleBooking(allow);
                statusBar()->showMessage(allow ? "Double bookings are allowed." : "Double bookings are refused.", 8000);
            } catch (...) {
                allowDoubleBookings_->setChecked(!allow);
                throw;
            }
        });
    });
    addUser_ = practiceMenu_->addAction("Add a &User...", this, [this] { guarded([this] { addUserByDialog(); }); });
    addUser_->setObjectName("addUser");
    showRole();
}

// What the user's role may not do is not offered; the store refuses it anyway.
void DeskWindow::showRole() {
    if (!practiceMenu_) return;
    bool administrator = false;
    try {
        administrator = store_.role() == Role::Administrator;
        allowDoubleBookings_->setChecked(store_.allowDoubleBooking());
    } catch (const StoreError&) {
    }
    practiceMenu_->menuAction()->setVisible(administrator);
    addUser_->setVisible(!store_.shared());
}

void DeskWindow::addUserByDialog() {
    QDialog dialog(this);
    dialog.setWindowTitle("Add a User — Practice Desk");
    auto* form = new QFormLayout(&dialog);
    auto* said = new QLabel("A user of " + store_.displayName() + ":", &dialog);
    form->addRow(said);
    auto* name = new QLineEdit(&dialog);
    auto* password = new QLineEdit(&dialog);
    auto* repeat = new QLineEdit(&dialog);
    password->setEchoMode(QLineEdit::Password);
    repeat->setEchoMode(QLineEdit::Password);
    auto* administrator = new QCheckBox("A practice &administrator", &dialog);
    form->addRow("&Name:", name);
    form->addRow("&Password:", password);
    form->addRow("&Repeat it:", repeat);
    form->addRow(administrator);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    form->addRow(buttons);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, [&] {
        if (password->text() != repeat->text()) {
            said->setText("The two passwords differ. Type the same one twice.");
            return;
        }
        try {
            store_.addUser(name->text().trimmed(), password->text(),
                           administrator->isChecked() ? Role::Administrator : Role::FrontDesk);
            dialog.accept();
        } catch (const StoreError& e) {
            said->setText(QString::fromStdString(e.what()));
        }
    });
    if (dialog.exec() == QDialog::Accepted)
        statusBar()->showMessage(name->text().trimmed() + " can log in now.", 8000);
}

// ---- A patient's history -------------------------------------------------------

namespace {

QString when(const QString& stored) {
    const QDateTime t = QDateTime::fromString(stored.left(19), "yyyy-MM-dd HH:mm:ss");
    return t.isValid() ? QLocale(QLocale::English).toString(t, "M/d/yyyy h:mm AP") : stored;
}

// What changed between the values before and after, in words.
QString changes(const AuditEntry& e, const std::map<QString, QString>& names) {
    auto value = [&](const QJsonObject& o, const QString& field) {
        const QString v = o.value(field).toVariant().toString();
        if (field == "resource_value") return names.contains(v) ? names.at(v) : v;
        if (field.endsWith("_at")) return when(v);
        return v;
    };
    if (e.action == "create" || e.action == "remove") {
        const QJsonObject& o = e.action == "create" ? e.after : e.before;
        return (e.action == "create" ? "booked " : "removed ") + value(o, "description") + ", " +
               value(o, "start_at") + " with " + value(o, "resource_value") + ", " + value(o, "status");
    }
    static const std::pair<const char*, const char*> fields[] = {
        {"resource_value", "with"},   {"start_at", "start"},          {"end_at", "end"},
        {"status", "status"},         {"description", "patient"},     {"type_id", "type"},
        {"comments", "comments"},     {"chief_complaint", "chief complaint"},
        {"prior_auth", "prior authorisation"}, {"ref_provider", "referring provider"},
        {"ref_provider_id", "referring provider's id"}};
    QStringList said;
    for (const auto& [field, label] : fields)
        if (e.before.value(field) != e.after.value(field))
            said << QString(label) + " " + value(e.before, field) + " → " + value(e.after, field);
    return e.action + ": " + said.join(", ");
}

} // namespace

void DeskWindow::showHistory(const QString& patientId) {
    if (history_) history_->close();
    auto* dialog = new QDialog(this);
    dialog->setObjectName("patientHistory");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    history_ = dialog;
    QString name = patientId;
    try {
        name = store_.patient(patientId).name;
    } catch (const StoreError&) {
    }
    dialog->setWindowTitle("History of " + name);
    auto* layout = new QVBoxLayout(dialog);
    std::map<QString, QString> names;
    std::vector<Visit> visits;
    try {
        for (const QString& record : store_.catalogue().resources.split("~~", Qt::SkipEmptyParts))
            names[record.section('~', 0, 0)] = record.section('~', 1, 1);
        visits = store_.visitsOf(patientId);
    } catch (const StoreError& e) {
        tell(QString::fromStdString(e.what()));
    }
    const bool administrator = store_.role() == Role::Administrator;
    if (!administrator)
        layout->addWidget(new QLabel("Removed visits and the audit trail are for a practice administrator.", dialog));
    auto* table = new QTableWidget(static_cast<int>(visits.size()), 4, dialog);
    table->setObjectName("visits");
    table->setAccessibleName("Visits of " + name);
    table->setHorizontalHeaderLabels({"When", "With", "Status", "Visit"});
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->hide();
    for (int row = 0; row < static_cast<int>(visits.size()); ++row) {
        const Visit& v = visits[static_cast<std::size_t>(row)];
        const StoredAppointment& a = v.appointment;
        const QString cells[] = {when(storedDate(a.start)), names.contains(a.resource) ? names[a.resource] : a.resource,
                                 v.removed ? "Removed (was " + a.status + ")" : a.status, a.description};
        for (int column = 0; column < 4; ++column) {
            auto* item = new QTableWidgetItem(cells[column]);
            item->setData(Qt::UserRole, a.id);
            if (v.removed) {
                QFont struck = item->font();
                struck.setStrikeOut(true);
                item->setFont(struck);
                item->setForeground(QColor("#8b0000"));
            }
            table->setItem(row, column, item);
        }
    }
    table->resizeColumnsToContents();
    layout->addWidget(table, 2);
    auto* trail = new QListWidget(dialog);
    trail->setObjectName("trail");
    trail->setAccessibleName("What happened to the chosen visit");
    trail->setWordWrap(true);
    layout->addWidget(new QLabel("What happened to the chosen visit:", dialog));
    layout->addWidget(trail, 1);
    QObject::connect(table, &QTableWidget::currentCellChanged, dialog, [this, table, trail, names](int row) {
        trail->clear();
        if (row < 0 || !table->item(row, 0)) return;
        try {
            for (const AuditEntry& e : store_.auditOf(table->item(row, 0)->data(Qt::UserRole).toLongLong()))
                trail->addItem(when(e.at) + "  " + e.who + " at " + e.desk + ": " + changes(e, names));
        } catch (const StoreError& e) {
            trail->addItem(QString::fromStdString(e.what()));
        }
    });
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    QObject::connect(close, &QDialogButtonBox::rejected, dialog, &QDialog::close);
    layout->addWidget(close);
    dialog->resize(760, 520);
    dialog->show();
    if (!visits.empty()) table->setCurrentCell(static_cast<int>(visits.size()) - 1, 0);
}

} // namespace practice
