; What makensis does not say in this language.
!define MULTIUSER_TEXT_INSTALLMODE_TITLE "사용자 선택"
!define MULTIUSER_TEXT_INSTALLMODE_SUBTITLE "$(^NameDA)을(를) 설치할 사용자를 선택하십시오."
!define MULTIUSER_INNERTEXT_INSTALLMODE_TOP "$(^NameDA)을(를) 자신만 쓰도록 설치할지, 이 컴퓨터의 모든 사용자가 쓰도록 설치할지 선택하십시오. $(^ClickNext)"
!define MULTIUSER_INNERTEXT_INSTALLMODE_ALLUSERS "이 컴퓨터를 쓰는 모든 사용자를 위해 설치"
!define MULTIUSER_INNERTEXT_INSTALLMODE_CURRENTUSER "나만 쓰도록 설치"
