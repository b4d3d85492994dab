// A form whose fields are checked while one types. "form" shows it; "form FILE.png" types into it by itself,
// leaves a picture, and fails where the form accepts what it must not.
#include <QApplication>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QtTest/QTest>

#include "desktop/Desktop.hpp"
#include "desktop/FormChecks.hpp"
#include "desktop/StatusControl.hpp"
#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

namespace {

class PaymentForm final : public QWidget {
 public:
    PaymentForm() {
        setWindowTitle(QString::fromUtf8("Zahlungsempfänger"));
        auto* layout = new QFormLayout(this);
        layout->addRow(QStringLiteral("&IBAN"), &iban);
        layout->addRow(QString::fromUtf8("&Fällig am"), &due);
        layout->addRow(QStringLiteral("&PLZ und Ort"), &place);
        layout->addRow(&save);
        layout->addRow(&line);
        line.setSizeGripEnabled(false);
        iban.setMinimumWidth(280);
        clsCommon().MessageLine(desktop::statusControl(line));

        checks.add(iban, IBAN, voRequired | voError);
        checks.add(due, Datum, voRequired | voError | datMoBisFr, {}, {}, u"/Min:01012024");
        checks.add(place, PLZundOrt, voError);

        connect(&save, &QPushButton::clicked, this, [this] {
            accepted = checks.status() < validError;
            messages.Nachricht(accepted ? u"Gespeichert: " + checks.value(iban)
                                        : Text(u"Bitte zuerst die Eingaben berichtigen."));
        });
    }

    QLineEdit iban, due, place;
    QPushButton save{QStringLiteral("&Speichern")};
    QStatusBar line;
    bool accepted = false;

 private:
    MessagesTopic messages;
    desktop::FormChecks checks;
};

void type(QLineEdit& into, const char* text) {
    into.setFocus();
    into.selectAll();
    QTest::keyClicks(&into, QString::fromUtf8(text));
    QTest::keyClick(&into, Qt::Key_Tab);
}

// What a user does: a slip in the IBAN, and a Saturday, which is only worth a warning.
bool tryItself(PaymentForm& form, const QString& picture) {
    form.activateWindow();
    if (!QTest::qWaitForWindowActive(&form)) return false;
    type(form.iban, "de86210501700012345678");
    type(form.due, "6.7.24");
    type(form.place, "52062 Aachen");
    form.save.click();
    const bool slipAccepted = form.accepted;
    QApplication::processEvents();
    if (!form.grab().save(picture)) return false;
    type(form.iban, "de68210501700012345678");
    form.save.click();
    return !slipAccepted && form.accepted && form.due.text() == QStringLiteral("06.07.2024") &&
           form.iban.text() == QStringLiteral("DE68 2105 0170 0012 3456 78");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const desktop::Desktop desk;
    PaymentForm form;
    form.show();
    if (argc < 2) return QApplication::exec();
    return tryItself(form, QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
