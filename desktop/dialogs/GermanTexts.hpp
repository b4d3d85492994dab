#pragma once
#include <QLibraryInfo>
#include <memory>

class QTranslator;

namespace tsRtm::desktop {

// The texts that Qt's own parts show, such as the menus of fields and of texts that can be selected, in
// German as all others are: from Qt's translation in the folder or, where it is not installed, those that
// occur here. An application that has brought a translation keeps it. Lasts as long as the object.
class GermanTexts {
 public:
    explicit GermanTexts(const QString& folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    ~GermanTexts();
    GermanTexts(const GermanTexts&) = delete;
    GermanTexts& operator=(const GermanTexts&) = delete;

 private:
    std::unique_ptr<QTranslator> texts_;
};

}  // namespace tsRtm::desktop
