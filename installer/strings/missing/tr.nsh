; What makensis does not say in this language.
!define MULTIUSER_TEXT_INSTALLMODE_TITLE "Kullanıcıları seçin"
!define MULTIUSER_TEXT_INSTALLMODE_SUBTITLE "$(^NameDA) kimin için kurulsun?"
!define MULTIUSER_INNERTEXT_INSTALLMODE_TOP "$(^NameDA) programını yalnızca kendiniz için mi, yoksa bu bilgisayarın tüm kullanıcıları için mi kurmak istediğinizi seçin. $(^ClickNext)"
!define MULTIUSER_INNERTEXT_INSTALLMODE_ALLUSERS "Bu bilgisayarı kullanan herkes için kur"
!define MULTIUSER_INNERTEXT_INSTALLMODE_CURRENTUSER "Yalnızca benim için kur"
