"""Texts in six scripts, as tickets have them, each with a face and the language that readers know it by."""
import dataclasses


@dataclasses.dataclass(frozen=True)
class Script:
    name: str
    language: str  # of the reader's data
    face: str
    text: str


SCRIPTS = (
    Script("Latin", "eng", "DejaVu Sans",
           "The concert begins at eight in the evening. Doors open one hour before, and latecomers "
           "are shown to their seats in the first interval. Please keep this ticket until you leave "
           "the hall; it is not valid without the part on the right. Photographs and recordings are "
           "not allowed. Row 12, seat 34, price 26.50 including all fees. Children under six years "
           "do not need a ticket if they sit on the lap of an adult."),
    Script("Greek", "ell", "DejaVu Sans",
           "Η συναυλία αρχίζει στις οκτώ το βράδυ. Οι πόρτες ανοίγουν μία ώρα πριν και όσοι αργήσουν "
           "μπαίνουν στο πρώτο διάλειμμα. Παρακαλούμε κρατήστε το εισιτήριο μέχρι να φύγετε από την "
           "αίθουσα. Δεν ισχύει χωρίς το δεξί τμήμα. Απαγορεύονται οι φωτογραφίες και οι "
           "ηχογραφήσεις. Σειρά 12, θέση 34, τιμή 26,50 ευρώ. Τα παιδιά κάτω των έξι ετών δεν "
           "χρειάζονται εισιτήριο."),
    Script("Cyrillic", "rus", "DejaVu Sans",
           "Концерт начинается в восемь часов вечера. Двери открываются за час до начала, опоздавшие "
           "зрители проходят в зал во время первого антракта. Пожалуйста, сохраняйте билет до выхода "
           "из зала: без правой части он недействителен. Фотографировать и записывать звук "
           "запрещено. Ряд 12, место 34, цена 26,50 рублей. Детям до шести лет билет не нужен, если "
           "они сидят на коленях у взрослых."),
    Script("Hebrew", "heb", "DejaVu Sans",
           "הקונצרט מתחיל בשעה שמונה בערב. הדלתות נפתחות שעה לפני כן, והמאחרים ייכנסו לאולם בהפסקה "
           "הראשונה. נא לשמור את הכרטיס עד היציאה מן האולם. הכרטיס אינו תקף בלי החלק הימני. אין לצלם "
           "ואין להקליט. ילדים קטנים אינם צריכים כרטיס אם הם יושבים על ברכי מבוגר."),
    Script("Arabic", "ara", "DejaVu Sans",
           "تبدأ الحفلة في الساعة الثامنة مساء. تفتح الأبواب قبل ساعة من البداية ويدخل المتأخرون في "
           "الاستراحة الأولى. يرجى الاحتفاظ بهذه التذكرة حتى مغادرة القاعة. لا تصلح التذكرة دون الجزء "
           "الأيمن. التصوير والتسجيل ممنوعان. لا يحتاج الأطفال الصغار إلى تذكرة إذا جلسوا مع الكبار."),
    Script("Devanagari", "hin", "Lohit Devanagari",
           "संगीत कार्यक्रम शाम आठ बजे शुरू होगा। दरवाजे एक घंटा पहले खुलेंगे और देर से आने वाले लोग पहले "
           "अंतराल में अंदर आ सकते हैं। कृपया यह टिकट हॉल से बाहर जाने तक अपने पास रखें। दाएं भाग के बिना "
           "यह टिकट मान्य नहीं है। फोटो लेना और रिकार्ड करना मना है। छोटे बच्चों के लिए टिकट की जरूरत "
           "नहीं है।"),
)
