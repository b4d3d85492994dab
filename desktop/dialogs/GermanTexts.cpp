#include "desktop/dialogs/GermanTexts.hpp"

#include <QCoreApplication>
#include <QTranslator>
#include <algorithm>
#include <string_view>

namespace tsRtm::desktop {
namespace {

struct Row {
    std::string_view source;
    const char* german;
};

constexpr Row kMenus[] = {
    {"&Copy", "&Kopieren"},
    {"&Paste", "Einf&ügen"},
    {"&Redo", "Wieder&herstellen"},
    {"&Undo", "&Rückgängig"},
    {"Bottom", "Unten"},
    {"Copy &Link Location", "&Link-Adresse kopieren"},
    {"Cu&t", "&Ausschneiden"},
    {"Delete", "Löschen"},
    {"Left edge", "Linker Rand"},
    {"Page down", "Eine Seite nach unten"},
    {"Page left", "Eine Seite nach links"},
    {"Page right", "Eine Seite nach rechts"},
    {"Page up", "Eine Seite nach oben"},
    {"Right edge", "Rechter Rand"},
    {"Scroll down", "Nach unten scrollen"},
    {"Scroll here", "Hierher scrollen"},
    {"Scroll left", "Nach links scrollen"},
    {"Scroll right", "Nach rechts scrollen"},
    {"Scroll up", "Nach oben scrollen"},
    {"Select All", "Alles auswählen"},
    {"Top", "Oben"},
};
constexpr Row kKeys[] = {
    {"Alt", "Alt"}, {"Ctrl", "Strg"}, {"Del", "Entf"}, {"Ins", "Einfg"}, {"Shift", "Umschalt"}};
static_assert(std::ranges::is_sorted(kMenus, {}, &Row::source));
static_assert(std::ranges::is_sorted(kKeys, {}, &Row::source));

template <std::size_t Count>
QString found(const Row (&rows)[Count], std::string_view source) {
    const auto* row = std::ranges::lower_bound(rows, source, {}, &Row::source);
    return row != std::end(rows) && row->source == source ? QString::fromUtf8(row->german) : QString();
}

class OwnTexts final : public QTranslator {
 public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override {
        constexpr std::string_view menus[] = {"QLineEdit", "QScrollBar", "QWidgetTextControl"};
        if (std::ranges::find(menus, context) != std::end(menus)) return found(kMenus, source);
        return context == std::string_view("QShortcut") ? found(kKeys, source) : QString();
    }
};

}  // namespace

GermanTexts::GermanTexts(const QString& folder) {
    constexpr const char* known = "&Copy";
    if (QCoreApplication::translate("QLineEdit", known) != QLatin1String(known)) return;
    texts_ = std::make_unique<QTranslator>();
    if (!texts_->load(QStringLiteral("qtbase_de"), folder)) texts_ = std::make_unique<OwnTexts>();
    QCoreApplication::installTranslator(texts_.get());
}

GermanTexts::~GermanTexts() {
    if (texts_) QCoreApplication::removeTranslator(texts_.get());
}

}  // namespace tsRtm::desktop
