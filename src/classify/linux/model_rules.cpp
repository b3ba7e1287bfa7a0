#include "classify/linux/rule_tables.h"

namespace ulvak::RuleBook {
namespace {

// One row per line, so that rows can be compared.
// clang-format off
constexpr Row rows[] = {
    // Hugging Face. Its folder is called a cache, but holds logins and recordings too.
    {.path = "$cache/huggingface", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Hugging Face verisi: {name}", .explanation = "Hugging Face araçlarının sakladığı oturumlar, ayarlar ve veriler. Önbellek klasöründe durur ama hepsi geri gelmez."},
    {.path = "$cache/huggingface/{token,stored_tokens,accelerate}", .level = SafetyLevel::keep, .title = "Hugging Face girişi", .explanation = "Giriş anahtarların ve ayarların. Silersen yeniden giriş yapman gerekir.", .actionable = false},
    {.path = "$cache/huggingface/lerobot", .level = SafetyLevel::keep, .title = "LeRobot kayıtları", .explanation = "Robotunla kaydettiğin veriler ve ayar ölçümleri. Önbellek klasöründe durur ama paylaşmadıkların geri gelmez.", .actionable = false},
    {.path = "$cache/huggingface/hub", .container = ScanContext::application, .level = SafetyLevel::caution, .title = "Hugging Face: {name}", .explanation = "Hugging Face indirmeleri arasında duran bir öğe. Ne olduğundan emin değilsen dokunma."},
    {.path = "$cache/huggingface/hub/models--*", .level = SafetyLevel::regenerable, .title = "Hugging Face modeli: {name}", .explanation = "İndirilmiş bir yapay zeka modeli. Silinirse gerektiğinde tekrar indirilir (uzun sürebilir); yayından kaldırıldıysa gelmez. İpucu: `hf cache rm`.", .processes = {"vllm", "llama-server"}},
    {.path = "$cache/huggingface/hub/datasets--*", .level = SafetyLevel::regenerable, .title = "Hugging Face veri kümesi: {name}", .explanation = "İndirilmiş bir veri kümesi. Silinirse gerektiğinde tekrar indirilir (uzun sürebilir); yayından kaldırıldıysa gelmez. İpucu: `hf cache rm`."},
    {.path = "$cache/huggingface/hub/{spaces--*,kernels--*,.locks,tmp*}", .level = SafetyLevel::regenerable, .title = "Hugging Face: {name}", .explanation = "Hugging Face'ten indirilen dosyalar. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "$cache/huggingface/datasets", .level = SafetyLevel::regenerable, .title = "Hazırlanmış veri kümeleri", .explanation = "Hugging Face veri kümelerinin işlenmiş halleri. Silinirse yeniden indirilip hazırlanır (uzun sürebilir)."},
    {.path = "$cache/huggingface/xet", .level = SafetyLevel::regenerable, .title = "Hugging Face parça önbelleği", .explanation = "İndirmeleri hızlandıran parçalar. Silinirse tekrar indirilir."},
    {.path = "$cache/huggingface/{assets,modules,metrics,evaluate,transformers,diffusers,sentence_transformers}", .level = SafetyLevel::regenerable, .title = "Hugging Face önbelleği: {name}", .explanation = "Kitaplıkların indirip hazırladığı dosyalar. Silinirse gerektiğinde yeniden oluşur."},
    {.path = "~/.huggingface", .level = SafetyLevel::keep, .title = "Hugging Face girişi", .explanation = "Giriş anahtarın. Silersen yeniden giriş yapman gerekir.", .actionable = false},

    // Weights that libraries download by themselves.
    {.path = "$cache/torch", .level = SafetyLevel::regenerable, .title = "PyTorch indirmeleri", .explanation = "PyTorch'un indirdiği model ağırlıkları. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "$cache/{torch_extensions,vllm,flashinfer,triton,cupy,numba,jax,xla}", .level = SafetyLevel::regenerable, .title = "{name} derlemeleri", .explanation = "Ekran kartı için derlenmiş kodlar. Silinirse bir sonraki çalıştırmada yeniden oluşur."},
    {.path = "~/.triton", .container = ScanContext::normal},
    {.path = "~/.triton/{cache,dump,override}", .level = SafetyLevel::regenerable, .title = "Triton önbelleği: {name}", .explanation = "Ekran kartı için derlenmiş kodlar. Silinirse bir sonraki çalıştırmada yeniden oluşur."},
    {.path = "~/.cupy", .container = ScanContext::normal},
    {.path = "~/.cupy/kernel_cache", .level = SafetyLevel::regenerable, .title = "CuPy önbelleği", .explanation = "Ekran kartı için derlenmiş kodlar. Silinirse bir sonraki çalıştırmada yeniden oluşur."},
    {.path = "$cache/whisper", .level = SafetyLevel::regenerable, .title = "Whisper modelleri", .explanation = "Konuşmayı yazıya çeviren modeller. Silinirse gerektiğinde tekrar indirilir (en büyüğü 3 GB)."},
    {.path = "$cache/dvc", .level = SafetyLevel::caution, .title = "DVC ortak önbelleği", .explanation = "DVC'nin sürümlediği veriler; projelerin burayı ortak kullanıyorsa göndermediklerinin tek kopyası olabilir. Önce projelerde `dvc push`."},
    {.path = "$cache/{clip,open_clip,suno,tts,xtts,coqui,vosk,sentence_transformers,instructlab,llama.cpp,outlines,fastembed,docling,marker,surya,datalab,rembg,gpt4all,onnx,tensorrt_llm,mlc_llm,nomic.ai}", .level = SafetyLevel::regenerable, .title = "{name} modelleri", .explanation = "Bir kitaplığın indirdiği yapay zeka modelleri. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "$cache/kagglehub", .level = SafetyLevel::regenerable, .title = "Kaggle indirmeleri", .explanation = "Kaggle'dan indirilen veri kümeleri ve modeller. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "~/.kaggle", .level = SafetyLevel::keep, .title = "Kaggle girişi", .explanation = "Giriş anahtarın. Silersen Kaggle'dan yenisini alman gerekir.", .actionable = false},
    {.path = "$cache/modelscope", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "ModelScope verisi: {name}", .explanation = "ModelScope'un oturumu ve ayarları."},
    {.path = "$cache/modelscope/{hub,models,datasets,ast_indexer}", .level = SafetyLevel::regenerable, .title = "ModelScope indirmeleri: {name}", .explanation = "İndirilmiş modeller ve veri kümeleri. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "$cache/modelscope/hub/credentials", .level = SafetyLevel::keep, .title = "ModelScope girişi", .explanation = "Giriş anahtarların. Silersen yeniden giriş yapman gerekir.", .actionable = false},
    {.path = "$cache/modelscope/hub/*", .level = SafetyLevel::regenerable, .title = "ModelScope indirmeleri", .explanation = "İndirilmiş modeller. Silinirse gerektiğinde tekrar indirilir.", .group = "modelscope"},
    {.path = "~/.modelscope", .level = SafetyLevel::keep, .title = "ModelScope girişi", .explanation = "Giriş anahtarların. Silersen yeniden giriş yapman gerekir.", .actionable = false},
    {.path = "~/.keras", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Keras ayarları", .explanation = "Keras'ın ayarları."},
    {.path = "~/.keras/datasets", .level = SafetyLevel::regenerable, .title = "Keras veri kümeleri", .explanation = "Keras'ın indirdiği veri kümeleri. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "~/.keras/models", .level = SafetyLevel::regenerable, .title = "Keras modelleri", .explanation = "Keras'ın indirdiği model ağırlıkları. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "~/.keras/keras-hub", .level = SafetyLevel::regenerable, .title = "Keras modelleri", .explanation = "Keras'ın indirdiği model ağırlıkları. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "~/nltk_data", .level = SafetyLevel::regenerable, .title = "NLTK verisi", .explanation = "NLTK'nin indirdiği metin koleksiyonları ve modeller. Silinirse `nltk.download()` tekrar indirir."},
    {.name = "nltk_data", .holds = {"corpora", "tokenizers", "taggers", "models", "sentiment", "stemmers"}, .level = SafetyLevel::regenerable, .title = "NLTK verisi", .explanation = "NLTK'nin indirdiği metin koleksiyonları ve modeller. Silinirse `nltk.download()` tekrar indirir."},
    {.path = "~/{gensim-data,scikit_learn_data,seaborn-data,mne_data,stanza_resources,nilearn_data,tensorflow-datasets}", .level = SafetyLevel::regenerable, .title = "Örnek veriler: {name}", .explanation = "Bir Python kitaplığının indirdiği veriler. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "~/tensorflow_datasets", .container = ScanContext::normal},
    {.path = "~/tensorflow_datasets/*", .level = SafetyLevel::regenerable, .title = "TensorFlow veri kümesi: {name}", .explanation = "İndirilip hazırlanmış bir veri kümesi. Silinirse gerektiğinde yeniden hazırlanır (uzun sürebilir)."},
    {.path = "~/tensorflow_datasets/downloads", .container = ScanContext::normal},
    {.path = "~/tensorflow_datasets/downloads/manual", .level = SafetyLevel::keep, .title = "Elle indirdiğin veriler", .explanation = "Veri kümeleri için kendin indirdiğin dosyalar. Kendiliğinden geri gelmez.", .actionable = false},
    {.path = "~/tensorflow_datasets/downloads/*", .level = SafetyLevel::regenerable, .title = "TensorFlow indirmeleri", .explanation = "Veri kümelerinin indirilen arşivleri. Silinirse gerektiğinde tekrar indirilir.", .group = "tfds"},
    {.path = "~/.u2net", .level = SafetyLevel::regenerable, .title = "rembg modelleri", .explanation = "Arka plan silen modeller. Silinirse gerektiğinde tekrar indirilir; buraya kendi modelini koyduysan önce yedekle."},
    {.path = "~/.EasyOCR", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "EasyOCR dosyaları", .explanation = "Kendi eğittiğin yazı tanıma modelleri burada olabilir."},
    {.path = "~/.EasyOCR/model", .level = SafetyLevel::regenerable, .title = "EasyOCR modelleri", .explanation = "Yazı tanıma modelleri. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "~/{.paddleocr,.paddlex,.paddlehub,.paddlenlp,.deepface,.insightface,.flair,.allennlp,.mxnet,.torch,.pytorch_pretrained_bert,.facexlib,.fastembed,.surya,.pyannote,.ivy_models}", .level = SafetyLevel::regenerable, .title = "İndirilmiş modeller: {name}", .explanation = "Bir Python kitaplığının indirdiği modeller. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "~/.deeppavlov", .level = SafetyLevel::caution, .title = "DeepPavlov modelleri", .explanation = "İndirilen dil modelleri ve veriler; kendi eğittiğin modeller de buraya kaydedilir. İndirilenler gerektiğinde tekrar iner, eğittiklerin geri gelmez."},
    {.path = "~/.fastai", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "fastai dosyaları", .explanation = "fastai'ın ayarları; eğittiğin modeller de burada olabilir."},
    {.path = "~/.fastai/{archive,data}", .level = SafetyLevel::regenerable, .title = "fastai verisi: {name}", .explanation = "fastai'ın indirdiği veri kümeleri. Silinirse `untar_data` tekrar indirir."},
    {.path = "$data/tts", .level = SafetyLevel::regenerable, .title = "Konuşma modelleri", .explanation = "Metni sese çeviren modeller. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "$data/argos-translate/packages", .level = SafetyLevel::regenerable, .title = "Çeviri modelleri", .explanation = "Argos Translate'in indirdiği diller. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "$data/huggingface", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Hugging Face verisi: {name}", .explanation = "Hugging Face araçlarının sakladığı oturumlar ve veriler."},

    // Programs that run models on this computer.
    {.path = "~/.ollama", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Ollama verisi: {name}", .explanation = "Ollama anahtarın, ayarların ve komut geçmişin.", .processes = {"ollama"}},
    {.path = "~/.ollama/{id_ed25519,id_ed25519.pub,history}", .level = SafetyLevel::keep, .title = "Ollama anahtarı", .explanation = "Ollama hesabının anahtarı ve komut geçmişin.", .actionable = false},
    {.path = "~/.ollama/logs", .level = SafetyLevel::safe, .title = "Ollama kayıtları", .explanation = "Ollama'nın günlükleri. Silmek güvenli.", .processes = {"ollama"}},
    {.path = "$data/.ollama", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Ollama verisi: {name}", .explanation = "Ollama anahtarın ve ayarların.", .processes = {"ollama"}},
    {.path = "$data/.ollama/models", .level = SafetyLevel::caution, .title = "Ollama modelleri", .explanation = "İndirilmiş yerel yapay zeka modelleri. Silersen tekrar indirmen gerekir (her biri birkaç GB).", .processes = {"ollama"}},
    {.path = "$data/com.jeffser.Alpaca", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Alpaca verisi: {name}", .explanation = "Sohbetlerin ve ayarların. Geri gelmez.", .quitApps = {"Alpaca"}},
    {.path = "$data/com.jeffser.Alpaca/.ollama", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Alpaca verisi: {name}", .explanation = "Sohbetlerin ve ayarların. Geri gelmez.", .quitApps = {"Alpaca"}},
    {.path = "$data/com.jeffser.Alpaca/.ollama/models", .level = SafetyLevel::caution, .title = "Alpaca modelleri", .explanation = "İndirilmiş yerel yapay zeka modelleri. Silersen tekrar indirmen gerekir (her biri birkaç GB).", .quitApps = {"Alpaca"}, .processes = {"ollama"}},
    {.path = "/usr/share/ollama/.ollama/models", .level = SafetyLevel::caution, .title = "Ollama modelleri", .explanation = "Sistem hizmetinin indirdiği yerel modeller; kendi Modelfile'ınla oluşturdukların da burada. Tek tek kaldırmak için `ollama rm`; `ollama pull` tekrar indirir.", .command = "ollama list", .actionable = false},
    {.path = "$cache/lm-studio", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "LM Studio verisi: {name}", .explanation = "Sohbetlerin, anahtarların ve ayarların. Önbellek klasöründe durur ama geri gelmez.", .quitApps = {"LM Studio"}, .processes = {"lm-studio", "LM-Studio*", "lms"}},
    {.path = "~/.lmstudio", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "LM Studio verisi: {name}", .explanation = "Sohbetlerin, anahtarların ve ayarların. Geri gelmez.", .quitApps = {"LM Studio"}, .processes = {"lm-studio", "LM-Studio*", "lms"}},
    {.path = "$cache/lm-studio/{conversations,credentials,config-presets,user-files}", .level = SafetyLevel::keep, .title = "LM Studio verisi: {name}", .explanation = "Sohbetlerin, anahtarların ve ayarların. Önbellek klasöründe durur ama geri gelmez.", .actionable = false},
    {.path = "~/.lmstudio/{conversations,credentials,config-presets,user-files}", .level = SafetyLevel::keep, .title = "LM Studio verisi: {name}", .explanation = "Sohbetlerin, anahtarların ve ayarların. Geri gelmez.", .actionable = false},
    {.path = "$cache/lm-studio/models", .level = SafetyLevel::caution, .title = "LM Studio modelleri", .explanation = "İndirilmiş yerel yapay zeka modelleri. Silersen tekrar indirmen gerekir (her biri birkaç GB).", .quitApps = {"LM Studio"}, .processes = {"lm-studio", "LM-Studio*", "lms"}},
    {.path = "~/.lmstudio/models", .level = SafetyLevel::caution, .title = "LM Studio modelleri", .explanation = "İndirilmiş yerel yapay zeka modelleri. Silersen tekrar indirmen gerekir (her biri birkaç GB).", .quitApps = {"LM Studio"}, .processes = {"lm-studio", "LM-Studio*", "lms"}},
    {.path = "$cache/lm-studio/extensions", .level = SafetyLevel::caution, .title = "LM Studio çalıştırıcıları", .explanation = "Modelleri çalıştıran indirilmiş parçalar. Silersen LM Studio'dan tekrar indirmen gerekir.", .quitApps = {"LM Studio"}, .processes = {"lm-studio", "LM-Studio*", "lms"}},
    {.path = "~/.lmstudio/extensions", .level = SafetyLevel::caution, .title = "LM Studio çalıştırıcıları", .explanation = "Modelleri çalıştıran indirilmiş parçalar. Silersen LM Studio'dan tekrar indirmen gerekir.", .quitApps = {"LM Studio"}, .processes = {"lm-studio", "LM-Studio*", "lms"}},
    {.path = "$cache/lm-studio/.session_cache", .level = SafetyLevel::regenerable, .title = "LM Studio belge önbelleği", .explanation = "Sohbetlere eklenen belgelerin hazırlanmış parçaları; zamanla çok büyüyebilir. Silinirse yeniden oluşur.", .quitApps = {"LM Studio"}, .processes = {"lm-studio", "LM-Studio*", "lms"}},
    {.path = "~/.lmstudio/.session_cache", .level = SafetyLevel::regenerable, .title = "LM Studio belge önbelleği", .explanation = "Sohbetlere eklenen belgelerin hazırlanmış parçaları; zamanla çok büyüyebilir. Silinirse yeniden oluşur.", .quitApps = {"LM Studio"}, .processes = {"lm-studio", "LM-Studio*", "lms"}},
    {.path = "~/.lmstudio/server-logs", .level = SafetyLevel::safe, .title = "LM Studio kayıtları", .explanation = "Sunucunun günlükleri. Hata ayıklamıyorsan silmek güvenli.", .quitApps = {"LM Studio"}, .processes = {"lm-studio", "LM-Studio*", "lms"}},
    {.path = "$config/LM Studio", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "LM Studio ayarları", .explanation = "LM Studio'nun ayarları ve oturumu.", .quitApps = {"LM Studio"}, .processes = {"lm-studio", "LM-Studio*"}},
    {.path = "$data/nomic.ai", .container = ScanContext::normal},
    {.path = "$data/nomic.ai/GPT4All", .container = ScanContext::application, .level = SafetyLevel::caution, .title = "GPT4All verisi: {name}", .explanation = "Sohbetlerin ve belge dizinlerin. Geri gelmez.", .quitApps = {"GPT4All"}},
    {.path = "$data/nomic.ai/GPT4All/*.gguf", .level = SafetyLevel::caution, .title = "GPT4All modeli: {name}", .explanation = "İndirilmiş yerel yapay zeka modeli. Silersen tekrar indirmen gerekir (birkaç GB).", .quitApps = {"GPT4All"}},
    {.path = "{~/.*,~/.*/*,~/.*/*/*,$data/*,$data/*/*,$data/*/*/*}/*.{gguf,safetensors}", .level = SafetyLevel::caution, .title = "Yapay zeka modeli: {name}", .explanation = "Bir programın yerel yapay zeka modeli. İndirilmişse tekrar indirilir (birkaç GB); kendi eğittiğin bir model geri gelmez."},
    {.path = "$config/Jan", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Jan verisi: {name}", .explanation = "Sohbetlerin ve ayarların. Geri gelmez.", .quitApps = {"Jan"}},
    {.path = "$data/Jan", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Jan verisi: {name}", .explanation = "Sohbetlerin ve ayarların. Geri gelmez.", .quitApps = {"Jan"}},
    {.path = "$config/Jan/data", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Jan verisi: {name}", .explanation = "Sohbetlerin ve ayarların. Geri gelmez.", .quitApps = {"Jan"}},
    {.path = "$data/Jan/data", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Jan verisi: {name}", .explanation = "Sohbetlerin ve ayarların. Geri gelmez.", .quitApps = {"Jan"}},
    {.path = "$config/Jan/data/{models,llamacpp,engines,extensions}", .level = SafetyLevel::caution, .title = "Jan modelleri: {name}", .explanation = "İndirilmiş yerel modeller ve onları çalıştıran parçalar. Silersen tekrar indirmen gerekir (her biri birkaç GB).", .quitApps = {"Jan"}},
    {.path = "$data/Jan/data/{models,llamacpp,engines,extensions}", .level = SafetyLevel::caution, .title = "Jan modelleri: {name}", .explanation = "İndirilmiş yerel modeller ve onları çalıştıran parçalar. Silersen tekrar indirmen gerekir (her biri birkaç GB).", .quitApps = {"Jan"}},
    {.path = "$config/anythingllm-desktop", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "AnythingLLM verisi: {name}", .explanation = "Sohbetlerin, belgelerin ve ayarların. Geri gelmez.", .quitApps = {"AnythingLLM"}},
    {.path = "$config/anythingllm-desktop/storage", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "AnythingLLM verisi: {name}", .explanation = "Sohbetlerin, belgelerin ve ayarların. Geri gelmez.", .quitApps = {"AnythingLLM"}},
    {.path = "$config/anythingllm-desktop/storage/models", .level = SafetyLevel::caution, .title = "AnythingLLM modelleri", .explanation = "İndirilmiş yerel modeller. Silersen tekrar indirmen gerekir (her biri birkaç GB).", .quitApps = {"AnythingLLM"}},
    {.path = "$config/Msty", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Msty verisi: {name}", .explanation = "Sohbetlerin ve ayarların. Geri gelmez.", .quitApps = {"Msty"}},
    {.path = "$config/Msty/models*", .level = SafetyLevel::caution, .title = "Msty modelleri", .explanation = "İndirilmiş yerel modeller. Silersen tekrar indirmen gerekir (her biri birkaç GB).", .quitApps = {"Msty"}},
    {.path = "~/.llamafile", .level = SafetyLevel::regenerable, .title = "llamafile önbelleği", .explanation = "llamafile programlarının açtığı parçalar. Silinirse yeniden oluşur."},
    {.name = "models", .siblings = {"main.py", "webui.py", "launch.py"}, .holds = {"checkpoints", "loras", "unet", "diffusion_models", "Stable-diffusion", "Lora", "ESRGAN"}, .level = SafetyLevel::caution, .title = "{parent} · modeller", .explanation = "Görüntü üreten programın modelleri. İndirilenler tekrar indirilir (her biri birkaç GB); kendi eğittiklerin ya da elle koydukların gelmez."},
    {.name = "temp", .siblings = {"main.py"}, .holds = {"ComfyUI_temp_*"}, .level = SafetyLevel::regenerable, .title = "{parent} · önizlemeler", .explanation = "ComfyUI'ın önizleme resimleri. Bir sonraki açılışta kendisi de siler."},
    {.name = "models", .siblings = {"comfyui_version.py", "webui.sh", "invokeai.yaml", "start_linux.sh", "webui-user.sh"}, .level = SafetyLevel::caution, .title = "{parent} · modeller", .explanation = "Görüntü ya da metin üreten programın modelleri. İndirilenler tekrar indirilir; kendi eğittiklerin ya da elle koydukların gelmez."},

    {.name = "user_data/models", .level = SafetyLevel::caution, .title = "Metin üreten programın modelleri", .explanation = "İndirilenler tekrar indirilir (her biri birkaç GB); kendi eğittiklerin ya da elle koydukların gelmez."},

    // Experiments. What has not been uploaded is here alone.
    {.name = "wandb", .holds = {"run-*", "offline-run-*", "latest-run"}, .level = SafetyLevel::caution, .title = "{parent} · W&B kayıtları", .explanation = "Weights & Biases deney kayıtları. `offline-run` ile başlayanlar sunucuya gönderilmemiş olabilir; önce `wandb sync` ile gönder."},
    {.path = "$data/wandb", .level = SafetyLevel::keep, .title = "W&B yükleme alanı", .explanation = "Sunucuya gönderilmeyi bekleyen deney dosyaları.", .actionable = false},
    {.path = "$cache/wandb", .level = SafetyLevel::regenerable, .title = "W&B önbelleği", .explanation = "İndirilen deney dosyalarının kopyaları. Silinirse gerektiğinde tekrar indirilir. İpucu: `wandb artifact cache cleanup 1GB`."},
    {.name = "{mlruns,mlartifacts}", .level = SafetyLevel::keep, .title = "{parent} · MLflow sonuçları", .explanation = "Deneylerinin sonuçları ve modelleri. Geri gelmez; gereksizleri MLflow'da sil, sonra `mlflow gc` çalıştır.", .command = "mlflow gc", .actionable = false},
    {.name = "lightning_logs", .holds = {"version_*"}, .level = SafetyLevel::caution, .title = "{parent} · eğitim kayıtları", .explanation = "Model eğitimlerinin kayıtları ve kaydedilmiş ağırlıkları. Yeniden eğitmeden geri gelmez; gereksiz sürümleri seçerek sil."},
    {.path = "~/ray_results", .level = SafetyLevel::keep, .title = "Ray deneyleri", .explanation = "Deneylerinin sonuçları ve modelleri. Yeniden eğitmeden geri gelmez; gereksizleri seçerek sil.", .actionable = false},
    {.path = "~/fiftyone", .level = SafetyLevel::caution, .title = "FiftyOne veri kümeleri", .explanation = "İndirilen veri kümeleri; kendi aktardıkların da burada olabilir. İndirilenler tekrar gelir."},
    {.path = "~/.fiftyone", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "FiftyOne verisi", .explanation = "Etiketlerin ve veri kümesi bilgilerin. Geri gelmez."},
    {.name = "installer_files", .siblings = {"start_linux.sh", "one_click.py", "webui.py"}, .level = SafetyLevel::caution, .title = "{parent} · kurulum ortamı", .explanation = "Programın kendi Python ortamı. Silinirse başlatma betiği yeniden kurar; birkaç GB indirir."},
    {.path = "$data/Coqui", .level = SafetyLevel::caution, .title = "Ses modelleri: {name}", .explanation = "İndirilmiş konuşma modelleri. Silinirse gerektiğinde yeniden indirilir; kendi eğittiğin bir model de burada olabilir."},
    {.name = "joblib", .level = SafetyLevel::caution, .title = "{parent} · joblib", .explanation = "Hesaplanmış ara sonuçlar. Silinirse bir sonraki çalıştırmada yeniden hesaplanır; uzun sürebilir."},
    {.path = "~/airflow/logs", .level = SafetyLevel::caution, .title = "Airflow günlükleri", .explanation = "Görevlerin günlükleri. Silersen geçmiş çalışmaların ayrıntılarına bakamazsın.", .processes = {"airflow"}},
};
// clang-format on

}  // namespace

Rows modelRows() {
    return rows;
}

}  // namespace ulvak::RuleBook
