#include "base/composed_text.h"

#include "base/utf8.h"

#include <algorithm>
#include <array>

namespace lumbrine {

namespace {

struct Mark {
    char32_t code;
    std::u32string_view pairs; // a character, the same with the mark, the next character, and so on
};

// By code.
constexpr auto marks = std::to_array<Mark>({
    {0x0300, U"AÀEÈIÌOÒUÙaàeèiìoòuùÜǛüǜNǸnǹЕЀИЍеѐиѝĒḔēḕŌṐōṑWẀwẁÂẦâầĂẰăằÊỀêềÔỒôồƠỜơờƯỪưừYỲyỳἀἂἁἃἈἊἉἋ"
             U"ἐἒἑἓἘἚἙἛἠἢἡἣἨἪἩἫἰἲἱἳἸἺἹἻὀὂὁὃὈὊὉὋὐὒὑὓὙὛὠὢὡὣὨὪὩὫαὰεὲηὴιὶοὸυὺωὼΑᾺΕῈΗῊ᾿῍ϊῒΙῚ῾῝ϋῢΥῪ¨῭ΟῸΩῺ"},
    {0x0301, U"AÁEÉIÍOÓUÚYÝaáeéiíoóuúyýCĆcćLĹlĺNŃnńRŔrŕSŚsśZŹzźÜǗüǘGǴgǵÅǺåǻÆǼæǽØǾøǿ¨΅ΑΆΕΈΗΉΙΊΟΌΥΎΩΏ"
             U"ϊΐαάεέηήιίϋΰοόυύωώϒϓГЃКЌгѓкќÇḈçḉĒḖēḗÏḮïḯKḰkḱMḾmḿÕṌõṍŌṒōṓPṔpṕŨṸũṹWẂwẃÂẤâấĂẮăắÊẾêếÔỐôố"
             U"ƠỚơớƯỨưứἀἄἁἅἈἌἉἍἐἔἑἕἘἜἙἝἠἤἡἥἨἬἩἭἰἴἱἵἸἼἹἽὀὄὁὅὈὌὉὍὐὔὑὕὙὝὠὤὡὥὨὬὩὭ᾿῎῾῞"},
    {0x0302, U"AÂEÊIÎOÔUÛaâeêiîoôuûCĈcĉGĜgĝHĤhĥJĴjĵSŜsŝWŴwŵYŶyŷZẐzẑẠẬạậẸỆẹệỌỘọộ"},
    {0x0303, U"AÃNÑOÕaãnñoõIĨiĩUŨuũVṼvṽÂẪâẫĂẴăẵEẼeẽÊỄêễÔỖôỗƠỠơỡƯỮưữYỸyỹ"},
    {0x0304, U"AĀaāEĒeēIĪiīOŌoōUŪuūÜǕüǖÄǞäǟȦǠȧǡÆǢæǣǪǬǫǭÖȪöȫÕȬõȭȮȰȯȱYȲyȳИӢиӣУӮуӯGḠgḡḶḸḷḹṚṜṛṝαᾱΑᾹιῑΙῙ"
             U"υῡΥῩ"},
    {0x0306, U"AĂaăEĔeĕGĞgğIĬiĭOŎoŏUŬuŭУЎИЙийуўЖӁжӂАӐаӑЕӖеӗȨḜȩḝẠẶạặαᾰΑᾸιῐΙῘυῠΥῨ"},
    {0x0307, U"CĊcċEĖeėGĠgġIİZŻzżAȦaȧOȮoȯBḂbḃDḊdḋFḞfḟHḢhḣMṀmṁNṄnṅPṖpṗRṘrṙSṠsṡŚṤśṥŠṦšṧṢṨṣṩTṪtṫWẆwẇXẊ"
             U"xẋYẎyẏſẛ"},
    {0x0308, U"AÄEËIÏOÖUÜaäeëiïoöuüyÿYŸΙΪΥΫιϊυϋϒϔЕЁІЇеёіїАӒаӓӘӚәӛЖӜжӝЗӞзӟИӤиӥОӦоӧӨӪөӫЭӬэӭУӰуӱЧӴчӵЫӸ"
             U"ыӹHḦhḧÕṎõṏŪṺūṻWẄwẅXẌxẍtẗ"},
    {0x0309, U"AẢaảÂẨâẩĂẲăẳEẺeẻÊỂêểIỈiỉOỎoỏÔỔôổƠỞơởUỦuủƯỬưửYỶyỷ"},
    {0x030A, U"AÅaåUŮuůwẘyẙ"},
    {0x030B, U"OŐoőUŰuűУӲуӳ"},
    {0x030C, U"CČcčDĎdďEĚeěLĽlľNŇnňRŘrřSŠsšTŤtťZŽzžAǍaǎIǏiǐOǑoǒUǓuǔÜǙüǚGǦgǧKǨkǩƷǮʒǯjǰHȞhȟ"},
    {0x030F, U"AȀaȁEȄeȅIȈiȉOȌoȍRȐrȑUȔuȕѴѶѵѷ"},
    {0x0311, U"AȂaȃEȆeȇIȊiȋOȎoȏRȒrȓUȖuȗ"},
    {0x0313, U"αἀΑἈεἐΕἘηἠΗἨιἰΙἸοὀΟὈυὐωὠΩὨρῤ"},
    {0x0314, U"αἁΑἉεἑΕἙηἡΗἩιἱΙἹοὁΟὉυὑΥὙωὡΩὩρῥΡῬ"},
    {0x031B, U"OƠoơUƯuư"},
    {0x0323, U"BḄbḅDḌdḍHḤhḥKḲkḳLḶlḷMṂmṃNṆnṇRṚrṛSṢsṣTṬtṭVṾvṿWẈwẉZẒzẓAẠaạEẸeẹIỊiịOỌoọƠỢơợUỤuụƯỰưựYỴyỵ"},
    {0x0324, U"UṲuṳ"},
    {0x0325, U"AḀaḁ"},
    {0x0326, U"SȘsșTȚtț"},
    {0x0327, U"CÇcçGĢgģKĶkķLĻlļNŅnņRŖrŗSŞsşTŢtţEȨeȩDḐdḑHḨhḩ"},
    {0x0328, U"AĄaąEĘeęIĮiįUŲuųOǪoǫ"},
    {0x032D, U"DḒdḓEḘeḙLḼlḽNṊnṋTṰtṱUṶuṷ"},
    {0x032E, U"HḪhḫ"},
    {0x0330, U"EḚeḛIḬiḭUṴuṵ"},
    {0x0331, U"BḆbḇDḎdḏKḴkḵLḺlḻNṈnṉRṞrṟTṮtṯZẔzẕhẖ"},
    {0x0338, U"←↚→↛↔↮⇐⇍⇔⇎⇒⇏∃∄∈∉∋∌∣∤∥∦∼≁≃≄≅≇≈≉=≠≡≢≍≭<≮>≯≤≰≥≱≲≴≳≵≶≸≷≹≺⊀≻⊁⊂⊄⊃⊅⊆⊈⊇⊉⊢⊬⊨⊭⊩⊮⊫⊯≼⋠≽⋡⊑⋢⊒⋣⊲⋪⊳⋫"
             U"⊴⋬⊵⋭"},
    {0x0342, U"ἀἆἁἇἈἎἉἏἠἦἡἧἨἮἩἯἰἶἱἷἸἾἹἿὐὖὑὗὙὟὠὦὡὧὨὮὩὯαᾶ¨῁ηῆ᾿῏ιῖϊῗ῾῟υῦϋῧωῶ"},
    {0x0345, U"ἀᾀἁᾁἂᾂἃᾃἄᾄἅᾅἆᾆἇᾇἈᾈἉᾉἊᾊἋᾋἌᾌἍᾍἎᾎἏᾏἠᾐἡᾑἢᾒἣᾓἤᾔἥᾕἦᾖἧᾗἨᾘἩᾙἪᾚἫᾛἬᾜἭᾝἮᾞἯᾟὠᾠὡᾡὢᾢὣᾣὤᾤὥᾥὦᾦὧᾧὨᾨὩᾩ"
             U"ὪᾪὫᾫὬᾬὭᾭὮᾮὯᾯὰᾲαᾳάᾴᾶᾷΑᾼὴῂηῃήῄῆῇΗῌὼῲωῳώῴῶῷΩῼ"},
    {0x3099, U"かがきぎくぐけげこごさざしじすずせぜそぞただちぢつづてでとどはばひびふぶへべほぼうゔ"
             U"ゝゞカガキギクグケゲコゴサザシジスズセゼソゾタダチヂツヅテデトドハバヒビフブヘベホボ"
             U"ウヴワヷヰヸヱヹヲヺヽヾ"},
    {0x309A, U"はぱひぴふぷへぺほぽハパヒピフプヘペホポ"},
});

// 0 when there is no such character.
char32_t withMark(char32_t character, char32_t mark) {
    const auto* const found = std::ranges::lower_bound(marks, mark, {}, &Mark::code);
    if (found == marks.end() || found->code != mark) return 0;
    for (std::size_t i = 0; i < found->pairs.size(); i += 2)
        if (found->pairs[i] == character) return found->pairs[i + 1];
    return 0;
}

// The letters of a Korean syllable follow each other by arithmetic: a first, a vowel, perhaps a last.
char32_t asSyllable(char32_t before, char32_t letter) {
    constexpr char32_t syllables = 0xAC00;
    constexpr char32_t firsts = 0x1100;
    constexpr char32_t vowels = 0x1161;
    constexpr char32_t noLast = 0x11A7;
    constexpr char32_t firstCount = 19;
    constexpr char32_t vowelCount = 21;
    constexpr char32_t lastCount = 28;
    if (before - firsts < firstCount && letter - vowels < vowelCount)
        return syllables + ((before - firsts) * vowelCount + (letter - vowels)) * lastCount;
    const bool isOpen =
        before - syllables < firstCount * vowelCount * lastCount && (before - syllables) % lastCount == 0;
    if (isOpen && letter > noLast && letter < noLast + lastCount) return before + (letter - noLast);
    return 0;
}

// `code` is beyond ASCII and in Unicode's basic plane, as every composed character is.
void append(std::string& text, char32_t code) {
    const auto last = [](char32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
    if (code < 0x800) {
        text += static_cast<char>(0xC0 | code >> 6);
    } else {
        text += static_cast<char>(0xE0 | code >> 12);
        text += last(code >> 6);
    }
    text += last(code);
}

} // namespace

std::string composed(std::string_view text) {
    std::string result;
    char32_t before = 0;      // the character that the next one may join
    std::size_t beforeAt = 0; // where it begins in the result
    while (!text.empty()) {
        const UTF8Character next = firstCharacter(text);
        const char32_t code = next.code.value_or(0);
        char32_t together = withMark(before, code);
        if (together == 0) together = asSyllable(before, code);
        if (together != 0) {
            result.resize(beforeAt);
            append(result, together);
            before = together;
        } else {
            before = code;
            beforeAt = result.size();
            result.append(text.substr(0, next.length));
        }
        text.remove_prefix(next.length);
    }
    return result;
}

} // namespace lumbrine
