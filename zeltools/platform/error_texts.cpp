// SPDX-License-Identifier: MIT
// What the error numbers mean, for people.

#include "zeltools/platform/errors.h"
#include "zeltools/platform/language.h"

#include <algorithm>
#include <iterator>

namespace platform {

namespace {

struct ErrorText {
    unsigned int error;
    char16_t const* english;
    char16_t const* french;
};

constexpr ErrorText errorTexts[] = {
    {ErrorSuccess, u"The operation succeeded.", u"L'opération a réussi."},
    {ErrorInvalidFunction, u"The operation makes no sense here.", u"L'opération n'a pas de sens ici."},
    {ErrorFileNotFound, u"The file does not exist.", u"Le fichier n'existe pas."},
    {ErrorPathNotFound, u"A folder of the path does not exist.", u"Un dossier du chemin n'existe pas."},
    {ErrorTooManyOpenFiles, u"Too many files are open.", u"Trop de fichiers sont ouverts."},
    {ErrorAccessDenied, u"Access is denied.", u"L'accès est refusé."},
    {ErrorInvalidHandle, u"The file is not open.", u"Le fichier n'est pas ouvert."},
    {ErrorNotEnoughMemory, u"There is not enough memory.", u"La mémoire est insuffisante."},
    {ErrorBadFormat, u"The format is not valid.", u"Le format n'est pas valable."},
    {ErrorInvalidData, u"The data is not valid.", u"Les données ne sont pas valables."},
    {ErrorNotSameDevice, u"The two places are on different disks.",
     u"Les deux emplacements sont sur des disques différents."},
    {ErrorNoMoreFiles, u"There are no more files.", u"Il n'y a plus de fichiers."},
    {ErrorWriteProtect, u"The disk is write-protected.", u"Le disque est protégé en écriture."},
    {ErrorNotReady, u"The device is not ready.", u"Le périphérique n'est pas prêt."},
    {ErrorCrc, u"The disk could not be read or written.", u"Le disque n'a pas pu être lu ou écrit."},
    {ErrorSeek, u"This file has no position.", u"Ce fichier n'a pas de position."},
    {ErrorGenFailure, u"The system reported a failure.", u"Le système a signalé un échec."},
    {ErrorSharingViolation, u"The file is in use.", u"Le fichier est en cours d'utilisation."},
    {ErrorLockViolation, u"A part of the file is locked.", u"Une partie du fichier est verrouillée."},
    {ErrorNotSupported, u"The operation is not supported.", u"L'opération n'est pas prise en charge."},
    {ErrorBadNetPath, u"The network path cannot be reached.", u"Le chemin réseau est inaccessible."},
    {ErrorUnexpectedNetwork, u"The connection to the server is broken.", u"La connexion au serveur est rompue."},
    {ErrorBadNetName, u"The network name does not exist.", u"Le nom de réseau n'existe pas."},
    {ErrorFileExists, u"The file exists already.", u"Le fichier existe déjà."},
    {ErrorInvalidParameter, u"A parameter is not valid.", u"Un paramètre n'est pas valable."},
    {ErrorBrokenPipe, u"The other end has closed.", u"L'autre extrémité est fermée."},
    {ErrorDiskFull, u"The disk is full.", u"Le disque est plein."},
    {ErrorCallNotImplemented, u"The system does not offer this call.", u"Le système n'offre pas cet appel."},
    {ErrorInsufficientBuffer, u"The buffer is too small.", u"La zone de données est trop petite."},
    {ErrorInvalidName, u"The file name is not valid.", u"Le nom de fichier n'est pas valable."},
    {ErrorModuleNotFound, u"The library does not exist.", u"La bibliothèque n'existe pas."},
    {ErrorProcedureNotFound, u"The library lacks a function.", u"Il manque une fonction à la bibliothèque."},
    {ErrorNegativeSeek, u"The position is before the beginning of the file.",
     u"La position précède le début du fichier."},
    {ErrorDirectoryNotEmpty, u"The folder is not empty.", u"Le dossier n'est pas vide."},
    {ErrorBadArguments, u"The arguments are not valid.", u"Les arguments ne sont pas valables."},
    {ErrorBadPathname, u"The path is not valid.", u"Le chemin n'est pas valable."},
    {ErrorBusy, u"The resource is in use.", u"La ressource est en cours d'utilisation."},
    {ErrorAlreadyExists, u"The name exists already.", u"Le nom existe déjà."},
    {ErrorBadExeFormat, u"The file is not a program for this system.",
     u"Le fichier n'est pas un programme pour ce système."},
    {ErrorFilenameTooLong, u"The file name is too long.", u"Le nom de fichier est trop long."},
    {ErrorFileTooLarge, u"The file is too large.", u"Le fichier est trop grand."},
    {ErrorMoreData, u"There is more data.", u"Il reste des données."},
    {ErrorNoMoreItems, u"There are no more items.", u"Il n'y a plus d'éléments."},
    {ErrorDirectory, u"The name is not that of a folder.", u"Le nom n'est pas celui d'un dossier."},
    {ErrorOperationAborted, u"The operation was interrupted.", u"L'opération a été interrompue."},
    {ErrorNoAccess, u"The memory cannot be accessed.", u"La mémoire est inaccessible."},
    {ErrorRegistryCorrupt, u"The registry is damaged.", u"Le registre est endommagé."},
    {ErrorRegistryIoFailed, u"The registry could not be read or written.", u"Le registre n'a pas pu être lu ou écrit."},
    {ErrorNotRegistryFile, u"The file is not a registry.", u"Le fichier n'est pas un registre."},
    {ErrorKeyDeleted, u"The registry key was deleted.", u"La clé de registre a été supprimée."},
    {ErrorTooManyLinks, u"The file has too many names.", u"Le fichier a trop de noms."},
    {ErrorBadDevice, u"The drive does not exist.", u"Le lecteur n'existe pas."},
    {ErrorConnectionUnavailable, u"The network drive is not connected.", u"Le lecteur réseau n'est pas connecté."},
    {ErrorDeviceAlreadyRemembered, u"The drive is in use already.", u"Le lecteur est déjà utilisé."},
    {ErrorNoNetOrBadPath, u"The share cannot be reached.", u"Le partage est inaccessible."},
    {ErrorNoNetwork, u"There is no network.", u"Il n'y a pas de réseau."},
    {ErrorCancelled, u"The operation was cancelled.", u"L'opération a été annulée."},
    {ErrorConnectionRefused, u"The server refused the connection.", u"Le serveur a refusé la connexion."},
    {ErrorTimeout, u"The time ran out.", u"Le délai est écoulé."},
    {ErrorCantResolveFilename, u"Symbolic links lead in a circle.", u"Des liens symboliques tournent en rond."},
    {ErrorNotConnected, u"This is not a network drive.", u"Ce n'est pas un lecteur réseau."},
};

constexpr unsigned int PrimaryLanguageMask = 0x3FF;
constexpr unsigned int PrimaryLanguageFrench = 0x0C;

} // namespace

std::u16string FormatMessageW(unsigned int error) {
    auto const* row = std::find_if(std::begin(errorTexts), std::end(errorTexts),
                                   [&](ErrorText const& text) { return text.error == error; });
    if (row == std::end(errorTexts)) {
        return {};
    }
    return (GetThreadUILanguage() & PrimaryLanguageMask) == PrimaryLanguageFrench ? row->french : row->english;
}

} // namespace platform
