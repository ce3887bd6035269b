#include "display/display_font.h"

#include <QStringList>

namespace rm {

QFont NamedFont(const char* family, int pixelHeight) {
    QFont font;
    font.setFamilies(QStringList{QString::fromLatin1(family), QStringLiteral("Liberation Sans"),
                                 QStringLiteral("DejaVu Sans")});
    font.setWeight(QFont::Normal);  // 400
    font.setPixelSize(pixelHeight > 0 ? pixelHeight : 1);
    font.setStyleHint(QFont::SansSerif);
    return font;
}

QFont DisplayFont(int pixelHeight) { return NamedFont("Arial", pixelHeight); }

}  // namespace rm
