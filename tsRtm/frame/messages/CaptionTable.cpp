// The button captions in six languages; "&" marks the access key. Spellings are as the applications know
// them.
#include <algorithm>
#include <array>

#include "tsRtm/frame/messages/TextTables.hpp"
#include "tsRtm/types/Captions.hpp"

namespace tsRtm {

namespace {

struct CaptionRow {
    int32 id;
    std::array<TextView, 6> texts;
};

// clang-format off
constexpr CaptionRow captions[] = {
    // German, English, Spanish, French, Italian, Dutch
    {sidOK, {u"&OK", u"&OK", u"&Aceptar", u"&OK", u"&OK", u"&OK"}},
    {sidCancel, {u"A&bbrechen", u"&Cancel", u"&Cancelar", u"&Annuler", u"&Annullare", u"&Annuleren"}},
    {sidAbort, {u"A&bbrechen", u"A&bort", u"A&bortar", u"A&vorter", u"A&bortire", u"Af&breken"}},
    {sidRetry, {u"Wieder&holen", u"&Retry", u"&Reintentar", u"&Réessayer", u"&Riprova", u"&Opnieuw"}},
    {sidIgnore, {u"&Ignorieren", u"&Ignore", u"&Ignorar", u"&Ignorer", u"&Ignorare", u"&Negeren"}},
    {sidYes, {u"&Ja", u"&Yes", u"&Sí", u"&Oui", u"&Si", u"&Ja"}},
    {sidNo, {u"&Nein", u"&No", u"&No", u"&Non", u"&No", u"&Nee"}},
    {sidClose, {u"&Schließen", u"&Close", u"&Cerrar", u"&Fermer", u"&Chiudere", u"&Sluiten"}},
    {sidHelp, {u"Hilfe", u"Help", u"Ayuda", u"Aider", u"Aiuto", u"Help"}},
    {sidAgain, {u"Wie&derholen", u"&Again", u"&Otra vez", u"&Encore", u"di &nuovo", u"Herh&alen"}},
    {sidContinue, {u"&Weiter", u"&Continue", u"&Continuar", u"&Continuer", u"&Continuare", u"&Voortzetten"}},
    {sidPrint, {u"&Drucken", u"&Print", u"Im&primir", u"Im&primer", u"Stam&pa", u"Af&drukken"}},
    {sidPreview, {u"&Vorschau", u"Pre&view", u"&Vista previa", u"&Aperçu", u"&Visualizza", u"&Voorbeeld"}},
    {sidSave, {u"&Speichern", u"&Save", u"&Guardar", u"&Sauver", u"&Salvare", u"&Opslaan"}},
    {sidLoad, {u"&Laden", u"&Load", u"&Cargar", u"&Charger", u"&Caricare", u"&Laden"}},
    {sidSearch, {u"&Suchen", u"&Search", u"&Búsqueda", u"&Rechercher", u"&Ricerda", u"&Zoeken"}},
    {sidReplace, {u"&Ersetzen", u"&Replace", u"&Reemplazar", u"&Remplacer", u"&Sostituire", u"&Vervangen"}},
    {sidNew, {u"&Neu", u"&New", u"&Nuevo", u"&Nouveau", u"&Nuovo", u"&Nieuw"}},
    {sidEnd, {u"Be&enden", u"&End", u"&Final", u"&Fin", u"&Fine", u"&Afsluiten"}},
    {sidDelete, {u"&Löschen", u"&Delete", u"&Borrar", u"&Effacer", u"&Cancellare", u"Ver&weijderen"}},
    {sidReady, {u"&Fertig", u"&Ready", u"&Listo", u"&Prêt", u"&Pronto", u"&Klaar"}},
    {sidApply, {u"&Fertigstellen", u"&Apply", u"&Completar", u"&Appliquer", u"&Applicare", u"Vol&tooien"}},
    {sidBack, {u"< &Zurück", u"< &Back", u"< &Espalda", u"< &Dos", u"< &Indietro", u"< &Terug"}},
    {sidNext, {u"&Weiter >", u"&Next >", u"&Más >", u"&Prochain >", u"&Prossimo >", u"V&olgende >"}},
    {sidOpen, {u"&Öffnen", u"&Open", u"&Abrir", u"&Ouvrir", u"&Aprire", u"&Openen"}},
    {sidSelect, {u"Aus&wahl", u"&Select", u"&Selección", u"&Sélection", u"&Selezione", u"&Selectie"}},
    {sidCopy, {u"&Kopieren", u"&Copy", u"&Copiar", u"&Copier", u"&Copiare", u"&Kopiëren"}},
    {sidEdit, {u"&Bearbeiten", u"&Edit", u"&Editar", u"É&diter", u"&Modificare", u"&Bewerken"}},
    {sidAdd, {u"&Hinzufügen", u"&Add", u"&Añadir", u"&Ajouter", u"&Aggiungere", u"&Toevoegen"}},
    {sidStart, {u"&Starten", u"&Start", u"&Comenzar", u"&Commencer", u"&Iniziare", u"&Beginnen"}},
    {sidLock, {u"&Sperren", u"&Lock", u"&Bloquear", u"&Bloquer", u"&Bloccare", u"B&lokkeren"}},
    {sidUnLock, {u"&Freigeben", u"&Unlock", u"&Desbloquear", u"&Débloquer", u"&Sbloccare", u"&Ontsluiten"}},
    {sidRemove, {u"&Entfernen", u"&Remove", u"&Quitar", u"&Supprimer", u"&Rimuovere", u"Ve&rwijderen"}},
    {sidShow, {u"An&zeigen", u"&Show", u"&Mostrar", u"&Montrer", u"&Mostra", u"&Tonen"}},
    {sidRefresh, {u"&Aktualisieren", u"&Refresh", u"&Refrescar", u"&Rafraîchir", u"&Rinfrescare", u"Actualise&ren"}},
    {sidChange, {u"&Ändern", u"&Change", u"&Cambiar", u"&Changer", u"&Cambiare", u"&Veranderen"}},
    {sidOptions, {u"&Optionen", u"&Options", u"&Opciones", u"&Options", u"&Opzioni", u"&Opties"}},
    {sidExtra, {u"E&xtra", u"E&xtra", u"E&xtra", u"&Supplément", u"E&xtra", u"E&xtra"}},
    {sidExtended, {u"Er&weitert", u"E&xtended", u"&Extendido", u"&Avancé", u"E&steso", u"&Geanvanceerd"}},
    {sidMove, {u"&Verschieben", u"&Move", u"&Mover", u"&Déplacer", u"&Spostare", u"&Verplaatsen"}},
    {sidProperties, {u"&Eigenschaften", u"&Properties", u"&Propiedades", u"&Propriétés", u"&Proprietà", u"Eigens&chappen"}},
    {sidInsert, {u"E&infügen", u"&Insert", u"&Insertar", u"&Insérer", u"&Inserire", u"P&lakken"}},
    {sidSaveAs, {u"Speichern &unter", u"Save &as", u"Guardar &como", u"Enregistrer &comme", u"Salva &come", u"Opslaan &als"}},
    {sidPrintAll, {u"&Alle drucken", u"Print &all", u"Imprimir &todo", u"Imprimer &tout", u"Stampa &tutto", u"&Alles afdrukken"}},
    {sidRename, {u"&Umbenennen", u"&Rename", u"&Renombrar", u"&Renommer", u"&Rinominare", u"Naam wi&jzigen"}},
};
// clang-format on

// English serves every language without a column of its own.
constexpr std::size_t column(int32 language) noexcept {
    switch (language) {
        case 7:
            return 0;
        case 10:
            return 2;
        case 12:
            return 3;
        case 16:
            return 4;
        case 19:
            return 5;
        default:
            return 1;
    }
}

}  // namespace

TextView captionText(int32 id, int32 language) noexcept {
    const auto* row = std::ranges::find(captions, id, &CaptionRow::id);
    return row == std::end(captions) ? TextView{} : row->texts[column(language)];
}

}  // namespace tsRtm
